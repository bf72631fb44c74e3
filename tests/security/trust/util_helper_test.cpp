#include "security/trust/util_helper.h"

#include <windows.h>

#include <cwchar>

#include <gmock/gmock.h>

#include "security/trust/fake_path_calls.h"
#include "support/import_watch.h"
#include "support/log_capture.h"

namespace Zq::Gantry::Server::Services {
namespace {

using Standin::ImportPatch;
using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::ExpansionFailure;
using TestSupport::FakeRpcQuery;
using TestSupport::ImportWatch;
using TestSupport::Info;
using TestSupport::LogCapture;
using TestSupport::ScopedVariable;
using TestSupport::Warning;

constexpr wchar_t kHelperComponent[] = L"WattleafService";

/// An absolute path of exactly `length` characters.
std::wstring PathOfLength(std::size_t length) {
  std::wstring path = L"C:\\";
  while (path.size() < length) path += path.size() % 50 == 49 ? L'\\' : L'a';
  path.back() = L'b';
  return path;
}

TEST(GetFullExpandedPath, ExpandsTheVariablesOfTheProcessAndNormalises) {
  const FakeRpcQuery rpc;
  const ScopedVariable place(L"WATTLEAF_PLACE", L"C:\\Some");
  const LogCapture log;
  EXPECT_EQ(UtilHelper::GetFullExpandedPath(L"%WATTLEAF_PLACE%\\a\\..\\b.dll", kHelperComponent),
            L"C:\\Some\\b.dll");
  EXPECT_THAT(log.Records(),
              ElementsAre(Info(L"ExpandEnvironmentStrings: [%WATTLEAF_PLACE%\\a\\..\\b.dll] "
                               L"[C:\\Some\\a\\..\\b.dll]",
                               kHelperComponent),
                          Info(L"GetFullPathName: [C:\\Some\\b.dll]", kHelperComponent)));
}

TEST(GetFullExpandedPath, IsEmptyForANullPathWithoutAnySystemCall) {
  const LogCapture log;
  const ImportWatch watch;
  EXPECT_EQ(UtilHelper::GetFullExpandedPath(nullptr, kHelperComponent), L"");
  EXPECT_THAT(watch.Calls(), IsEmpty());
  EXPECT_THAT(log.Records(),
              ElementsAre(Warning(L"class Zq::Gantry::Server::Services::UtilHelper.NullChecker - "
                                  L"filePath cannot be null",
                                  kHelperComponent)));
}

TEST(GetFullExpandedPath, ContinuesWithAnEmptyTextWhenTheExpansionFails) {
  static std::wstring input;
  input = L"unset";
  const FakeRpcQuery rpc;
  const ImportPatch expand(
      "ExpandEnvironmentStringsW", +[](LPCWSTR, LPWSTR, DWORD) -> DWORD {
        SetLastError(8);
        return 0;
      });
  const ImportPatch full(
      "GetFullPathNameW", +[](LPCWSTR path, DWORD, LPWSTR, LPWSTR*) -> DWORD {
        input = path;
        SetLastError(123);
        return 0;
      });
  const LogCapture log;
  EXPECT_EQ(UtilHelper::GetFullExpandedPath(L"C:\\a", kHelperComponent), L"");
  EXPECT_EQ(input, L"");
  EXPECT_THAT(
      log.Records(),
      ElementsAre(Warning(ExpansionFailure(L"ExpandEnvironmentStrings", 8), kHelperComponent),
                  Warning(ExpansionFailure(L"GetFullPathName", 123), kHelperComponent)));
}

TEST(GetFullExpandedPath, NeverUsesTheTextOfAFailedExpansion) {
  const FakeRpcQuery rpc;
  const ImportPatch expand(
      "ExpandEnvironmentStringsW", +[](LPCWSTR, LPWSTR text, DWORD chars) -> DWORD {
        wcscpy_s(text, chars, L"C:\\Windows\\a.dll");
        return 0;
      });
  const LogCapture log;
  EXPECT_EQ(UtilHelper::GetFullExpandedPath(L"%windir%\\a.dll", L""), L"");
  EXPECT_EQ(log.Records().size(), 2U);
}

TEST(GetFullExpandedPath, IsEmptyWhenTheFullPathFails) {
  const FakeRpcQuery rpc;
  const ImportPatch full(
      "GetFullPathNameW", +[](LPCWSTR, DWORD, LPWSTR, LPWSTR*) -> DWORD {
        SetLastError(5);
        return 0;
      });
  const LogCapture log;
  EXPECT_EQ(UtilHelper::GetFullExpandedPath(L"C:\\a", L""), L"");
  EXPECT_THAT(log.Records(), ElementsAre(Info(L"ExpandEnvironmentStrings: [C:\\a] [C:\\a]"),
                                         Warning(ExpansionFailure(L"GetFullPathName", 5))));
}

TEST(GetFullExpandedPath, PassesACapacityOf260CharactersToBothCalls) {
  static DWORD expandChars = 0;
  static DWORD fullChars = 0;
  const FakeRpcQuery rpc;
  const ImportPatch expand(
      "ExpandEnvironmentStringsW", +[](LPCWSTR, LPWSTR text, DWORD chars) -> DWORD {
        expandChars = chars;
        return text[0] = L'x', 2;
      });
  const ImportPatch full(
      "GetFullPathNameW", +[](LPCWSTR, DWORD chars, LPWSTR text, LPWSTR*) -> DWORD {
        fullChars = chars;
        return text[0] = L'y', 1;
      });
  const LogCapture log;
  EXPECT_EQ(UtilHelper::GetFullExpandedPath(L"C:\\a", L""), L"y");
  EXPECT_EQ(expandChars, 260U);
  EXPECT_EQ(fullChars, 260U);
}

TEST(GetFullExpandedPath, AcceptsTheLongestPathThatFits) {
  const FakeRpcQuery rpc;
  const std::wstring path = PathOfLength(259);
  const LogCapture log;
  EXPECT_EQ(UtilHelper::GetFullExpandedPath(path.c_str(), L""), path);
}

TEST(GetFullExpandedPath, IsEmptyWhenTheExpansionDoesNotFit) {
  const FakeRpcQuery rpc;
  const std::wstring value = PathOfLength(260);
  const ScopedVariable place(L"WATTLEAF_PLACE", value.c_str());
  const LogCapture log;
  EXPECT_EQ(UtilHelper::GetFullExpandedPath(L"%WATTLEAF_PLACE%", L""), L"");
  EXPECT_EQ(UtilHelper::GetFullExpandedPath(value.c_str(), L""), L"");
  // Each call logs the failed expansion and the failed full path of the empty text.
  ASSERT_EQ(log.Records().size(), 4U);
  for (const TestSupport::LogRecord& record : log.Records()) {
    EXPECT_EQ(record.level, Standin::LogLevel::kWarning);
  }
}

TEST(GetFullExpandedPath, NeverUsesATruncatedExpansion) {
  static std::wstring input;
  input = L"unset";
  const FakeRpcQuery rpc;
  // Like the system, truncates the text and returns the length needed.
  const ImportPatch expand(
      "ExpandEnvironmentStringsW", +[](LPCWSTR, LPWSTR text, DWORD chars) -> DWORD {
        std::wstring(chars, L'w').copy(text, chars);
        SetLastError(0);
        return chars + 1;
      });
  const ImportPatch full(
      "GetFullPathNameW", +[](LPCWSTR path, DWORD, LPWSTR, LPWSTR*) -> DWORD {
        input = path;
        SetLastError(123);
        return 0;
      });
  const LogCapture log;
  EXPECT_EQ(UtilHelper::GetFullExpandedPath(L"%windir%\\a", L""), L"");
  EXPECT_EQ(input, L"");
  EXPECT_THAT(log.Records(), ElementsAre(Warning(ExpansionFailure(L"ExpandEnvironmentStrings", 0)),
                                         Warning(ExpansionFailure(L"GetFullPathName", 123))));
}

TEST(GetFullExpandedPath, IsEmptyWhenOnlyTheFullPathDoesNotFit) {
  const FakeRpcQuery rpc;
  // Relative, so the full path begins with the current folder.
  const std::wstring name(259, L'n');
  const LogCapture log;
  EXPECT_EQ(UtilHelper::GetFullExpandedPath(name.c_str(), L""), L"");
  const auto records = log.Records();
  ASSERT_EQ(records.size(), 2U);
  EXPECT_EQ(records[0], Info(L"ExpandEnvironmentStrings: [" + name + L"] [" + name + L"]"));
  EXPECT_EQ(records[1].level, Standin::LogLevel::kWarning);
}

TEST(GetFullExpandedPath, IsEmptyForAFullPathOf260Characters) {
  static DWORD result = 0;
  const FakeRpcQuery rpc;
  const ImportPatch full(
      "GetFullPathNameW", +[](LPCWSTR, DWORD, LPWSTR text, LPWSTR*) -> DWORD {
        text[0] = L'x';
        SetLastError(0);
        return result;
      });
  const LogCapture log;
  result = 260;
  EXPECT_EQ(UtilHelper::GetFullExpandedPath(L"C:\\a", L""), L"");
  EXPECT_EQ(log.Records().back(), Warning(ExpansionFailure(L"GetFullPathName", 0)));
  result = 259;
  EXPECT_EQ(UtilHelper::GetFullExpandedPath(L"C:\\a", L""), L"x");
}

TEST(GetFullExpandedPath, TreatsEveryStatusButZeroAsNoClient) {
  const ScopedVariable place(L"WATTLEAF_PLACE", L"C:\\Own");
  for (const RPC_STATUS status : {RPC_STATUS{5}, RPC_STATUS{1702}, RPC_STATUS{1725}}) {
    const FakeRpcQuery rpc(status);
    const LogCapture log;
    EXPECT_EQ(UtilHelper::GetFullExpandedPath(L"%WATTLEAF_PLACE%\\a", L""), L"C:\\Own\\a");
  }
}

TEST(NullChecker, LogsAWarningForEachNullArgument) {
  const LogCapture log;
  const int value = 1;
  std::vector<UtilHelper::NamedArgument> arguments{
      {nullptr, "first"}, {&value, "second"}, {nullptr, "third"}};
  EXPECT_TRUE(UtilHelper::NullChecker(arguments, L"WattleafService"));
  EXPECT_THAT(log.Records(),
              ElementsAre(Warning(L"class Zq::Gantry::Server::Services::UtilHelper.NullChecker - "
                                  L"first cannot be null",
                                  L"WattleafService"),
                          Warning(L"class Zq::Gantry::Server::Services::UtilHelper.NullChecker - "
                                  L"third cannot be null",
                                  L"WattleafService")));
}

TEST(NullChecker, FindsANullArgumentAfterOthers) {
  const LogCapture log;
  const int value = 1;
  std::vector<UtilHelper::NamedArgument> arguments{{&value, "first"}, {nullptr, "last"}};
  EXPECT_TRUE(UtilHelper::NullChecker(arguments, L""));
  EXPECT_EQ(log.Records().size(), 1U);
}

TEST(NullChecker, ReturnsFalseAndLogsNothingWhenNoArgumentIsNull) {
  const LogCapture log;
  const int value = 1;
  std::vector<UtilHelper::NamedArgument> arguments{{&value, "first"}, {&value, "second"}};
  EXPECT_FALSE(UtilHelper::NullChecker(arguments, L"WattleafService"));
  EXPECT_FALSE(UtilHelper::NullChecker(arguments, L"WattleafService"));  // an empty list
  EXPECT_THAT(log.Records(), IsEmpty());
}

TEST(NullChecker, EmptiesTheList) {
  const LogCapture log;
  const int value = 1;
  std::vector<UtilHelper::NamedArgument> arguments{{nullptr, "first"}, {&value, "second"}};
  static_cast<void>(UtilHelper::NullChecker(arguments, L""));
  EXPECT_THAT(arguments, IsEmpty());
}

TEST(BeginsWith, IgnoresCaseAndAcceptsAnEmptyPrefix) {
  EXPECT_TRUE(UtilHelper::BeginsWith(L"c:\\windows\\x", L"C:\\WINDOWS\\"));
  EXPECT_FALSE(UtilHelper::BeginsWith(L"c:\\windows", L"C:\\WINDOWS\\"));
  EXPECT_TRUE(UtilHelper::BeginsWith(L"", L""));
}

}  // namespace
}  // namespace Zq::Gantry::Server::Services
