// Uses the library's security layer like a host: checks whether a client needs no manifest, whether
// a file is trusted, whether a client may start a tool of the system, and whether a parameter of a
// request passes a rule. Exits with status 1 if an exception of the library left state in this
// program.
//
//   access_client [FILE]
//   access_client rule KIND TEXT VALUE
//
// FILE is checked like a library that the service would load; by default it is this program. The
// second form only prints whether VALUE passes a rule of that kind whose node holds TEXT.

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <memory>
#include <ostream>
#include <streambuf>
#include <string>

#include "../wine_answers.h"
#include "collection/helper_operations.h"
#include "rule_objects.h"
#include "security/access/access_manager.h"
#include "security/access/client_information.h"
#include "security/access/client_manifest_criteria.h"
#include "security/access/exemption_white_lists.h"
#include "security/access/manifest_exemption.h"
#include "security/access/rule_validators.h"
#include "security/facade/zq_authenticode_facade.h"

namespace {

using namespace Zq::Gantry;

void Print(const std::string& statement, bool answer) {
  std::printf("%s: %s\n", statement.c_str(), answer ? "yes" : "no");
}

bool IsExemptStoreClient(std::uint16_t major, std::uint16_t minor) {
  auto client = std::make_shared<Server::Uwp::UwpInformation>(
      L"C7E40B19.ZQLumenGuard", L"C7E40B19.ZQLumenGuard_q7m3xk2tdw9pa", major, minor);
  auto list = Security::UwpWithNoZQManifestExemptionWhiteList::GetExemption();

  Security::GantryAccessManager manager;
  manager.SetUwpChecker(
      std::make_shared<Security::UwpWithNoZqManifestCheckBasedOnMajorAndMinorVersion>(list,
                                                                                      client));
  return manager.IsUwpExempt();
}

bool IsExemptProgram(const wchar_t* name, std::uint16_t major, std::uint16_t minor) {
  auto client = std::make_shared<Server::Win32::Win32Information>(name, major, minor);
  auto list = Security::Win32WithNoZQManifestExemptionWhiteList::GetExemption();

  Security::GantryAccessManager manager;
  manager.SetWin32Checker(
      std::make_shared<Security::Win32WithNoZqManifestCheckBasedOnMajorAndMinorVersion>(list,
                                                                                        client));
  return manager.IsWin32Exempt();
}

void CheckClients() {
  Print("Store client ZQLumenGuard 2.0 is exempt", IsExemptStoreClient(2, 0));
  Print("Store client ZQLumenGuard 2.1 is exempt", IsExemptStoreClient(2, 1));
  Print("program LatchWardenUWP 8.9 is exempt", IsExemptProgram(L"LatchWardenUWP", 8, 9));
  Print("program LatchWardenUWP 8.10 is exempt", IsExemptProgram(L"LatchWardenUWP", 8, 10));
}

/// A host may decide by its own rule.
class NoClientIsExempt : public Security::IClientWithNoZqManifestCheckCriteria {
 public:
  bool IsAnException() override { return false; }
};

void UseOwnChecker() {
  Security::GantryAccessManager manager;
  manager.SetWin32Checker(std::make_shared<NoClientIsExempt>());
  Print("a program is exempt by a checker that exempts no client", manager.IsWin32Exempt());
}

/// Counts how often the stream that writes to it flushes.
class FlushCounter : public std::streambuf {
 public:
  int Count() const { return count_; }

 protected:
  int_type overflow(int_type character) override { return traits_type::not_eof(character); }
  int sync() override {
    ++count_;
    return 0;
  }

 private:
  int count_ = 0;
};

/// A stream with `unitbuf` flushes after each output, unless an exception is being thrown.
bool UnbufferedStreamFlushes() {
  FlushCounter counter;
  std::ostream stream(&counter);
  stream << std::unitbuf << "text";
  return counter.Count() == 1;
}

/// Prints the exception that `call` throws. Returns false if it throws none, or if this program's
/// runtime still counts the exception after it was caught: then library and program do not share
/// one runtime.
bool PrintException(const char* what, const std::function<void()>& call) {
  bool thrown = false;
  try {
    call();
  } catch (const Security::gantry_access_exception& exception) {
    std::printf("%s: %s\n", what, exception.what());
    thrown = true;
  }
  if (thrown && std::uncaught_exceptions() == 0 && UnbufferedStreamFlushes()) return true;
  std::printf("%s: thrown: %d, uncaught exceptions: %d, flushes: %d\n", what, thrown,
              std::uncaught_exceptions(), UnbufferedStreamFlushes());
  return false;
}

bool CallWithoutChecker() {
  Security::GantryAccessManager manager;
  const bool store = PrintException("without a checker for store clients",
                                    [&] { static_cast<void>(manager.IsUwpExempt()); });
  const bool program = PrintException("without a checker for programs",
                                      [&] { static_cast<void>(manager.IsWin32Exempt()); });
  return store && program;
}

std::wstring Widen(const char* text) {
  std::wstring wide(std::mbstowcs(nullptr, text, 0) + 1, L'\0');
  wide.resize(std::mbstowcs(wide.data(), text, wide.size()));
  return wide;
}

void CheckFile(const char* path) {
  Security::ZQAuthenticodeFacade facade;
  const std::wstring file = Widen(path);
  Print("the file is one that the service would load", facade.IsServiceFileTrusted(file.c_str()));
  Print("its place is allowed", facade.IsPathAllowed(file.c_str()));
}

void CheckTool() {
  Security::ZQAuthenticodeFacade facade;
  // This thread serves no call, so there is no client that could be allowed to.
  Print("a client may start sfc.exe",
        facade.IsToolLaunchAllowed(L"%windir%\\System32\\sfc.exe", /*restricted=*/false,
                                   L"/scannow", L"access_client"));
}

/// Whether `value` passes a rule of this kind whose node holds `ruleText`.
bool Passes(const wchar_t* kind, const std::wstring& ruleText, const std::wstring& value) {
  const Security::XmlNodeReference node(new AccessClient::TextNode(ruleText));
  const Security::ValueReference box(new AccessClient::BoxedText(value));
  return Security::RuleValidators.at(kind)(node, box);
}

void CheckParameters() {
  Print("disk1 passes the rule regex", Passes(L"regex", L"[a-z]+[0-9]", L"disk1"));
  Print("disk12 passes it", Passes(L"regex", L"[a-z]+[0-9]", L"disk12"));

  constexpr wchar_t kFolders[] = L"C:\\Tools\\,D:\\";
  Print("a file of a listed folder passes the rule begins_with_from_list",
        Passes(L"begins_with_from_list", kFolders, L"c:\\tools\\report.txt"));
  Print("a file that climbs out of it passes it",
        Passes(L"begins_with_from_list", kFolders, L"C:\\Tools\\..\\report.txt"));

  Print("a parameter that is not there passes the rule none",
        Security::RuleValidators.at(L"none")(nullptr, nullptr));
}

/// A program may also call the library's one object without a service. Nothing has started the
/// collector in this process, so there are no figures.
void CheckFigures() {
  Print("figures can be expected in this process",
        Server::Services::Wattleaf::WattleafHelper::Instance().IsDataAvailable());
}

}  // namespace

int main(int count, char** arguments) {
  WineAnswers::Install(GetModuleHandleW(L"WattleafService.dll"));
  if (count == 5 && std::string(arguments[1]) == "rule") {
    const bool passes =
        Passes(Widen(arguments[2]).c_str(), Widen(arguments[3]), Widen(arguments[4]));
    std::puts(passes ? "yes" : "no");
    return EXIT_SUCCESS;
  }
  CheckClients();
  UseOwnChecker();
  const bool exceptionsLeftNoState = CallWithoutChecker();
  CheckFile(count > 1 ? arguments[1] : arguments[0]);
  CheckTool();
  CheckParameters();
  CheckFigures();
  return exceptionsLeftNoState ? EXIT_SUCCESS : EXIT_FAILURE;
}
