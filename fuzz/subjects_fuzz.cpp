// Any text as a certificate's subject, and any bytes as its key: the fields and texts are those of
// the plain way, one character at a time. The bytes are 16-bit characters.
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "fuzz_input.h"
#include "security/trust/zq_authenticode_helper.h"

using namespace Zq::Gantry::Security;
using Fuzz::Require;

namespace {

constexpr const char* kBlanks = " \f\n\r\t\v";

std::vector<std::wstring> LinesOf(const std::wstring& text) {
  std::vector<std::wstring> lines(1);
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == L'\r' && i + 1 < text.size() && text[i + 1] == L'\n') {
      lines.emplace_back();
      ++i;
    } else {
      lines.back() += text[i];
    }
  }
  return lines;
}

/// The last value of each key.
std::map<std::wstring, std::wstring> LiteralFields(const std::wstring& text) {
  std::map<std::wstring, std::wstring> fields;
  for (const std::wstring& line : LinesOf(text)) {
    std::wstring key;
    bool hasBlank = false;
    std::size_t i = 0;
    for (; i < line.size() && line[i] != L'='; ++i) {
      const bool isFirstBlank = line[i] == L' ' && !hasBlank;
      hasBlank = hasBlank || isFirstBlank;
      if (isFirstBlank) {
        key.clear();
      } else {
        key += line[i];
      }
    }
    if (i < line.size()) fields[key] = line.substr(i + 1);
  }
  return fields;
}

void CheckSubject(const std::wstring& text) {
  SignerDescriptor record;
  ZQAuthenticodeHelper::ParseSubject(text, record);
  auto fields = LiteralFields(text);
  Require(record.commonName == fields[L"CN"] && record.organizationalUnit == fields[L"OU"]);
  Require(record.organization == fields[L"O"] && record.locality == fields[L"L"]);
  Require(record.state == fields[L"S"] && record.country == fields[L"C"]);
  Require(record.issuer.empty() && record.publicKey.empty());
}

void CheckKeyText(const std::uint8_t* data, std::size_t size) {
  std::string expected;
  for (std::size_t i = 0; i < size; ++i) {
    char pair[4];
    std::snprintf(pair, sizeof(pair), "%02x ", data[i]);
    expected += pair;
  }
  Require(ZQAuthenticodeHelper::BytesToHexText(data, size) == expected);
}

void CheckTrimmed(std::string text) {
  std::string expected = text;
  const auto isBlank = [](char c) { return c != '\0' && std::strchr(kBlanks, c) != nullptr; };
  while (!expected.empty() && isBlank(expected.back())) expected.pop_back();
  while (!expected.empty() && isBlank(expected.front())) expected.erase(0, 1);
  try {
    Require(ZQAuthenticodeHelper::TrimText(text, kBlanks) == expected && !expected.empty());
  } catch (const std::out_of_range&) {
    Require(expected.empty());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  CheckSubject(Fuzz::Input(data, size).WideUntil(L'\xFFFF'));
  CheckKeyText(data, size);
  CheckTrimmed({reinterpret_cast<const char*>(data), size});
  return 0;
}
