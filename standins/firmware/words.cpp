#include "words.h"

#include <wbemidl.h>

#include <cstdlib>
#include <sstream>

#include "variants.h"

namespace Standin::Firmware {

namespace {

struct Word {
  const char* text;
  void (*apply)(Script& script);
};

constexpr HRESULT Result(unsigned long code) { return static_cast<HRESULT>(code); }

/// Words that change one call.
constexpr Word kCallWords[] = {
    {"no-locator", [](Script& s) { s.Fail("CreateInstance", Result(REGDB_E_CLASSNOTREG)); }},
    {"no-firmware-namespace",
     [](Script& s) {
       s.Fail("ConnectServer(\\\\.\\root\\wmi)", Result(WBEM_E_INVALID_NAMESPACE));
     }},
    {"no-system-namespace",
     [](Script& s) { s.Fail("ConnectServer(ROOT\\CIMV2)", Result(WBEM_E_INVALID_NAMESPACE)); }},
    {"no-blanket", [](Script& s) { s.Fail("SetBlanket", Result(E_ACCESSDENIED)); }},
    {"no-class", [](Script& s) { s.Fail("GetObject(zqqBIntM)", Result(WBEM_E_NOT_FOUND)); }},
    {"no-input-class",
     [](Script& s) { s.Fail("GetObject(zqqBDataIn)", Result(WBEM_E_NOT_FOUND)); }},
    {"no-method", [](Script& s) { s.Fail("GetMethod", Result(WBEM_E_NOT_FOUND)); }},
    {"no-instance", [](Script& s) { s.Fail("Next(ZqqBIntM)", Result(WBEM_S_FALSE)); }},
    {"slow-instance", [](Script& s) { s.Fail("Next(ZqqBIntM)", Result(WBEM_S_TIMEDOUT)); }},
    {"no-call", [](Script& s) { s.Fail("ExecMethod", Result(WBEM_E_FAILED)); }},
    {"outdata-null",
     [](Script& s) { s.Answer("Get(OutData)", [](VARIANT* v) { v->vt = VT_NULL; }); }},
    {"return-code-null",
     [](Script& s) { s.Answer("Get(rwReturnCode)", [](VARIANT* v) { v->vt = VT_NULL; }); }},
    {"data-null", [](Script& s) { s.Answer("Get(Data)", [](VARIANT* v) { v->vt = VT_NULL; }); }},
    {"no-computer-system",
     [](Script& s) { s.Fail("Next(Win32_ComputerSystem)", Result(WBEM_S_FALSE)); }},
    {"invalid-class",
     [](Script& s) { s.Fail("Next(Win32_ComputerSystem)", Result(WBEM_E_INVALID_CLASS)); }},
    {"invalid-query",
     [](Script& s) { s.Fail("Next(Win32_ComputerSystem)", Result(WBEM_E_INVALID_QUERY)); }},
    {"oem-missing", [](Script& s) { s.Fail("Get(OEMStringArray)", Result(WBEM_E_NOT_FOUND)); }},
    {"oem-null",
     [](Script& s) { s.Answer("Get(OEMStringArray)", [](VARIANT* v) { v->vt = VT_NULL; }); }},
    {"oem-empty",
     [](Script& s) { s.Answer("Get(OEMStringArray)", [](VARIANT* v) { MakeTexts(v, {}); }); }},
    {"oem-text",
     [](Script& s) {
       s.Answer("Get(OEMStringArray)", [](VARIANT* v) { MakeText(v, L"CarbonSupport=1"); });
     }},
    {"oem-number",
     [](Script& s) { s.Answer("Get(OEMStringArray)", [](VARIANT* v) { MakeNumber(v, 1); }); }},
    {"oem-truth",
     [](Script& s) {
       s.Answer("Get(OEMStringArray)", [](VARIANT* v) { MakeTruth(v, VARIANT_TRUE); });
     }},
    {"oem-numbers",
     [](Script& s) {
       s.Answer("Get(OEMStringArray)", [](VARIANT* v) {
         MakeElements<LONG>(v, VT_I4, 0, {1, 2, 3});
       });
     }},
};

/// Words that the code of the machine looks up in the script itself.
constexpr const char* kMachineWords[] = {
    "flag-clear",
    "drops-write",
    "reads-six",
    "data-short",
    "data-long",
    "data-numbers",
    "data-two-dimensional",
    "data-from-one",
    "data-from-minus-one",
    "no-marker",
    "marker-lower-case",
    "marker-goes-on",
    "two-computer-systems",
    "null-computer-system",
};

/// "fail:Call=80041001" or, for one occurrence, "fail:Call#2=80041001".
bool ApplyFailure(const std::string& word, Script& script) {
  const auto equals = word.rfind('=');
  if (word.rfind("fail:", 0) != 0 || equals == std::string::npos) return false;
  std::string call = word.substr(5, equals - 5);
  int occurrence = kAlways;
  const auto number = call.rfind('#');
  if (number != std::string::npos) {
    occurrence = std::atoi(call.c_str() + number + 1);
    call.resize(number);
  }
  const unsigned long code = std::strtoul(word.c_str() + equals + 1, nullptr, 16);
  script.Fail(call, Result(code), occurrence);
  return true;
}

}  // namespace

std::vector<std::string> SplitWords(const std::string& words) {
  std::vector<std::string> result;
  std::istringstream stream(words);
  for (std::string word; std::getline(stream, word, ',');) {
    if (!word.empty()) result.push_back(word);
  }
  return result;
}

bool ApplyWord(const std::string& word, Script& script) {
  for (const Word& known : kCallWords) {
    if (word == known.text) {
      known.apply(script);
      return true;
    }
  }
  for (const char* known : kMachineWords) {
    if (word == known) return true;
  }
  return ApplyFailure(word, script);
}

}  // namespace Standin::Firmware
