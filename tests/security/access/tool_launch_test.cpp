#include "security/access/tool_launch.h"

#include <windows.h>

#include <gmock/gmock.h>

#include <cstddef>
#include <functional>
#include <type_traits>

#include "security/access/judged_files.h"
#include "support/temp_folder.h"

namespace Zq::Gantry::Security {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::Info;
using TestSupport::JudgedFiles;
using TestSupport::LogRecord;

constexpr wchar_t kHarbourDesk[] = L"C7E40B19.ZQHarbourDesk_q7m3xk2tdw9pa";
constexpr const wchar_t* kTools[] = {L"regsvr32.exe", L"DISM.exe", L"sfc.exe",
                                     L"rundll32.exe", L"mmc.exe",  L"rstrui.exe"};

std::wstring System32(const std::wstring& name) { return L"C:\\Windows\\System32\\" + name; }

/// Every tool is signed; the caller is the application of the table.
class ToolLaunch : public testing::Test {
 protected:
  ToolLaunch() { files_.SignAll(kVerified, "30 0a"); }

  bool Ask(const ToolLaunchRules& table, const wchar_t* tool, bool restricted = false,
           const wchar_t* line = L"") {
    return IsLaunchAllowedBy(table, {tool, restricted, line, L"component"}, [this] {
      ++familiesAsked_;
      return family_;
    });
  }
  bool Ask(const std::wstring& tool) { return Ask(ToolLaunchTable, tool.c_str()); }

  JudgedFiles files_;
  std::wstring family_ = kHarbourDesk;
  int familiesAsked_ = 0;
};

/// One row for sfc.exe.
ToolLaunchRules SfcRow(ToolLaunchRule rule) {
  return {{L"%windir%\\System32\\sfc.exe", std::move(rule)}};
}

/// A check that records what it was given.
struct RecordingCheck {
  bool answer = true;
  std::vector<std::wstring> lines = {};

  ToolLaunchRules Table() {
    return SfcRow({{}, true, [this](const std::wstring& line) {
                     lines.push_back(line);
                     return answer;
                   }});
  }
};

}  // namespace

TEST(ToolLaunchTable, HasSixRowsForOneFamilyInOrderOfTheirKeys) {
  std::vector<std::wstring> keys;
  for (const auto& [key, rule] : ToolLaunchTable) {
    keys.push_back(key);
    EXPECT_THAT(rule.AllowedFamilies, ElementsAre(kHarbourDesk));
    EXPECT_TRUE(rule.AllowWhenRestricted);
  }
  EXPECT_THAT(keys,
              ElementsAre(L"%windir%\\System32\\DISM.exe", L"%windir%\\System32\\mmc.exe",
                          L"%windir%\\System32\\regsvr32.exe", L"%windir%\\System32\\rstrui.exe",
                          L"%windir%\\System32\\rundll32.exe", L"%windir%\\System32\\sfc.exe"));
}

TEST(ToolLaunchTable, ChecksTheArgumentsOfTwoTools) {
  using Check = bool (*)(const std::wstring&);
  for (const auto& [key, rule] : ToolLaunchTable) {
    Check expected = nullptr;
    if (key == L"%windir%\\System32\\regsvr32.exe") expected = CheckRegsvr32Arguments;
    if (key == L"%windir%\\System32\\rundll32.exe") expected = CheckRundll32Arguments;
    const Check* const check = rule.ArgumentCheck.target<Check>();
    EXPECT_EQ(check == nullptr ? nullptr : *check, expected);
    EXPECT_EQ(static_cast<bool>(rule.ArgumentCheck), expected != nullptr);
  }
}

TEST(ToolLaunchTable, CannotBeChanged) {
  EXPECT_TRUE(std::is_const_v<decltype(ToolLaunchTable)>);
  EXPECT_TRUE(
      std::is_const_v<std::remove_reference_t<decltype((ToolLaunchTable.begin()->second))>>);
}

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
#endif
TEST(ToolLaunchTable, RulesHoldTheirFieldsInOrder) {
  constexpr std::size_t kFamilies = sizeof(std::vector<std::wstring>);
  EXPECT_EQ(offsetof(ToolLaunchRule, AllowedFamilies), 0U);
  EXPECT_EQ(offsetof(ToolLaunchRule, AllowWhenRestricted), kFamilies);
  EXPECT_EQ(offsetof(ToolLaunchRule, ArgumentCheck), kFamilies + 8);
  EXPECT_EQ(sizeof(ToolLaunchRule), kFamilies + 8 + sizeof(std::function<bool(std::wstring)>));
}
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

TEST_F(ToolLaunch, EachToolOfTheTableMayBeStarted) {
  for (const wchar_t* tool : kTools) EXPECT_TRUE(Ask(System32(tool))) << tool;
  EXPECT_EQ(familiesAsked_, 6);
}

TEST_F(ToolLaunch, EachToolMayBeStartedInRestrictedMode) {
  for (const wchar_t* tool : kTools) {
    EXPECT_TRUE(Ask(ToolLaunchTable, System32(tool).c_str(), /*restricted=*/true)) << tool;
  }
}

TEST_F(ToolLaunch, ASeventhToolIsRefusedWithoutASignatureCheck) {
  for (const wchar_t* tool : {L"cmd.exe", L"powershell.exe", L"notepad.exe"}) {
    EXPECT_FALSE(Ask(System32(tool))) << tool;
  }
  EXPECT_FALSE(Ask(L"C:\\Windows\\sfc.exe"));
  EXPECT_FALSE(Ask(L"D:\\Windows\\System32\\sfc.exe"));
  EXPECT_TRUE(files_.trust.calls.empty());
  EXPECT_EQ(familiesAsked_, 0);
}

TEST_F(ToolLaunch, ThePathMayComeInAnotherCase) {
  EXPECT_TRUE(Ask(L"c:\\WINDOWS\\system32\\SFC.EXE"));
  EXPECT_TRUE(Ask(L"C:\\windows\\SYSTEM32\\dism.exe"));
}

TEST_F(ToolLaunch, ThePathMayComeWithItsVariableOrRoundabout) {
  EXPECT_TRUE(Ask(L"%windir%\\System32\\sfc.exe"));
  EXPECT_TRUE(Ask(L"%WINDIR%\\Temp\\..\\System32\\.\\sfc.exe"));
}

TEST_F(ToolLaunch, APathThatMerelyStartsLikeAToolsDoesNotMatch) {
  EXPECT_FALSE(Ask(System32(L"sfc.exe.bak")));
  EXPECT_FALSE(Ask(System32(L"sfc.exe\\x")));
  EXPECT_FALSE(Ask(System32(L"sfc.ex")));
  EXPECT_TRUE(files_.trust.calls.empty());
}

TEST_F(ToolLaunch, ANullOrEmptyPathMatchesNoRow) {
  EXPECT_FALSE(Ask(ToolLaunchTable, nullptr));
  EXPECT_FALSE(Ask(L""));
  EXPECT_TRUE(files_.trust.calls.empty());
}

TEST_F(ToolLaunch, AnEmptyExpansionMatchesNotEvenARowWhoseKeyIsEmptyToo) {
  const ToolLaunchRules table = {{L"", {{}, true, nullptr}}};
  EXPECT_FALSE(Ask(table, L""));
  EXPECT_FALSE(Ask(table, nullptr));
}

TEST_F(ToolLaunch, WhereNothingCanBeExpandedNothingMatches) {
  const Standin::ImportPatch expand(
      "ExpandEnvironmentStringsW", +[](LPCWSTR, LPWSTR, DWORD) -> DWORD { return 0; });
  for (const wchar_t* tool : kTools) EXPECT_FALSE(Ask(System32(tool))) << tool;
}

TEST_F(ToolLaunch, AnotherFamilyIsRefusedForEveryRow) {
  for (const wchar_t* family : {L"C7E40B19.ZQHarbourDesk_q7m3xk2tdw9pb", L"harbourdesk",
                                L"c7e40b19.zqharbourdesk_q7m3xk2tdw9pa"}) {
    family_ = family;
    for (const wchar_t* tool : kTools) EXPECT_FALSE(Ask(System32(tool))) << tool;
  }
  EXPECT_TRUE(files_.trust.calls.empty());
}

TEST_F(ToolLaunch, ACallerOutsideAPackageIsRefusedForEveryRow) {
  family_.clear();
  for (const wchar_t* tool : kTools) EXPECT_FALSE(Ask(System32(tool))) << tool;
}

TEST_F(ToolLaunch, ARowWithoutFamiliesDoesNotAskWhoCalls) {
  family_.clear();
  EXPECT_TRUE(Ask(SfcRow({{}, true, nullptr}), L"%windir%\\System32\\sfc.exe"));
  EXPECT_EQ(familiesAsked_, 0);
}

TEST_F(ToolLaunch, ARowMayBeClosedInRestrictedMode) {
  for (const std::vector<std::wstring>& families :
       {std::vector<std::wstring>{}, std::vector<std::wstring>{kHarbourDesk}}) {
    const ToolLaunchRules table = SfcRow({families, false, nullptr});
    EXPECT_TRUE(Ask(table, L"%windir%\\System32\\sfc.exe", /*restricted=*/false));
    files_.trust.calls.clear();
    EXPECT_FALSE(Ask(table, L"%windir%\\System32\\sfc.exe", /*restricted=*/true));
    EXPECT_TRUE(files_.trust.calls.empty());
  }
  EXPECT_EQ(familiesAsked_, 2) << "who calls is asked first";
}

TEST_F(ToolLaunch, TheToolNeedOnlyBeAcceptedByTheSystem) {
  struct Row {
    std::uint32_t verdict;
    bool allowed;
  };
  for (const Row& row : {Row{kVerified, true}, Row{kVerifiedButExpired, true},
                         Row{kUntrustedRoot, false}, Row{0x80096010, false}}) {
    files_.SignAll(row.verdict, ServiceTrustedKeys.front());
    EXPECT_EQ(Ask(System32(L"sfc.exe")), row.allowed) << std::hex << row.verdict;
  }
  files_.trust.embedded.clear();
  EXPECT_FALSE(Ask(System32(L"sfc.exe")));
}

TEST_F(ToolLaunch, TheSignaturesAskedForAreThoseOfTheExpandedPath) {
  EXPECT_TRUE(Ask(L"%windir%\\System32\\sfc.exe"));
  EXPECT_THAT(files_.VerifiedFiles(), ElementsAre(L"C:\\Windows\\System32\\sfc.exe"));
}

TEST_F(ToolLaunch, TheToolNeedNotLieInAProtectedPlace) {
  const ToolLaunchRules table = {{L"D:\\Users\\tool.exe", {{}, true, nullptr}}};
  EXPECT_TRUE(Ask(table, L"D:\\Users\\tool.exe"));
}

TEST_F(ToolLaunch, TheFirstMatchEndsTheWalk) {
  const ToolLaunchRules table = {
      {L"%windir%\\System32\\SFC.EXE", {{L"Nobody_1"}, true, nullptr}},
      {L"%windir%\\System32\\sfc.exe", {{}, true, nullptr}},
  };
  EXPECT_FALSE(Ask(table, L"%windir%\\System32\\sfc.exe"));
}

TEST_F(ToolLaunch, TheCommandLineDecidesWhereTheRowHasACheck) {
  RecordingCheck check;
  EXPECT_TRUE(Ask(check.Table(), L"%windir%\\System32\\sfc.exe", false, L"/scannow"));
  check.answer = false;
  EXPECT_FALSE(Ask(check.Table(), L"%windir%\\System32\\sfc.exe", false, L"\"a b\" c"));
  EXPECT_THAT(check.lines, ElementsAre(L"/scannow", L"\"a b\" c"));
}

TEST_F(ToolLaunch, TheCommandLineIsJudgedAlsoWhereTheToolIsRefused) {
  RecordingCheck check;
  files_.trust.embedded.clear();
  EXPECT_FALSE(Ask(check.Table(), L"%windir%\\System32\\sfc.exe", false, L"x"));
  EXPECT_THAT(check.lines, ElementsAre(L"x"));
}

TEST_F(ToolLaunch, TheCommandLineIsJudgedAfterTheTool) {
  std::vector<std::size_t> verdictsBefore;
  const ToolLaunchRules table = SfcRow({{}, true, [&](const std::wstring&) {
                                          verdictsBefore.push_back(files_.trust.calls.size());
                                          return true;
                                        }});
  EXPECT_TRUE(Ask(table, L"%windir%\\System32\\sfc.exe"));
  EXPECT_THAT(verdictsBefore, ElementsAre(files_.trust.calls.size()));
  EXPECT_FALSE(files_.trust.calls.empty());
}

TEST_F(ToolLaunch, ANullCommandLineIsAnEmptyOne) {
  RecordingCheck check;
  EXPECT_TRUE(Ask(check.Table(), L"%windir%\\System32\\sfc.exe", false, nullptr));
  EXPECT_THAT(check.lines, ElementsAre(L""));
  EXPECT_TRUE(Ask(ToolLaunchTable, System32(L"regsvr32.exe").c_str(), false, nullptr));
}

TEST_F(ToolLaunch, TheTwoCheckedToolsHoldTheirFileToTheServicesKeys) {
  for (const wchar_t* tool : {L"regsvr32.exe", L"rundll32.exe"}) {
    const std::wstring path = System32(tool);
    files_.SignAll(kVerified, "30 0a");
    EXPECT_FALSE(Ask(ToolLaunchTable, path.c_str(), false, L"C:\\Windows\\a.dll")) << tool;
    files_.SignAllForTheService();
    EXPECT_TRUE(Ask(ToolLaunchTable, path.c_str(), false, L"C:\\Windows\\a.dll")) << tool;
    EXPECT_FALSE(Ask(ToolLaunchTable, path.c_str(), false, L"D:\\a.dll")) << tool;
  }
}

TEST_F(ToolLaunch, ToolAndKeyAreExpandedForTheComponentAndTheToolOnceMore) {
  EXPECT_TRUE(Ask(L"%windir%\\Temp\\..\\System32\\dism.exe"));
  const auto expansion = [](const wchar_t* text, const wchar_t* expanded, const wchar_t* full) {
    return std::vector{
        Info(std::wstring(L"ExpandEnvironmentStrings: [") + text + L"] [" + expanded + L"]",
             L"component"),
        Info(std::wstring(L"GetFullPathName: [") + full + L"]", L"component")};
  };
  const auto ofTool =
      expansion(L"%windir%\\Temp\\..\\System32\\dism.exe",
                L"C:\\Windows\\Temp\\..\\System32\\dism.exe", L"C:\\Windows\\System32\\dism.exe");
  const auto ofKey = expansion(L"%windir%\\System32\\DISM.exe", L"C:\\Windows\\System32\\DISM.exe",
                               L"C:\\Windows\\System32\\DISM.exe");
  const auto records = files_.log.Records();
  ASSERT_GT(records.size(), 6U);
  EXPECT_THAT(std::vector(records.begin(), records.begin() + 6),
              ElementsAre(ofTool[0], ofTool[1], ofKey[0], ofKey[1], ofTool[0], ofTool[1]));
  EXPECT_EQ(records[6],
            Info(L"Security - GetSecurityCatalogInfo - File = C:\\Windows\\System32\\dism.exe"));
}

TEST_F(ToolLaunch, ASignatureThroughACatalogDoes) {
  const TestSupport::TempFolder folder;
  const std::wstring tool = folder.File(L"tool.exe");
  TestSupport::WriteWholeFile(tool, "content");
  std::swap(files_.trust.byCatalog, files_.trust.embedded);
  const ToolLaunchRules table = {{tool, {{}, true, nullptr}}};
  EXPECT_FALSE(Ask(table, tool.c_str()));
  files_.catalogs.catalogs = {L"C:\\catalogs\\first.cat"};
  EXPECT_TRUE(Ask(table, tool.c_str()));
}

TEST_F(ToolLaunch, HostilePathsMatchNoRow) {
  const std::wstring tool = System32(L"sfc.exe");
  for (const std::wstring& path :
       {std::wstring(1'000'000, L'\\'), std::wstring(1'000'000, L'%'),
        tool + std::wstring(1'000'000, L'e'), std::wstring(1'000'000, L'.') + tool,
        tool + L"\xD800", L"\xDFFF" + tool}) {
    EXPECT_FALSE(Ask(path)) << path.size();
  }
  EXPECT_TRUE(files_.trust.calls.empty());
}

TEST_F(ToolLaunch, ANullComponentIsAnEmptyOne) {
  EXPECT_TRUE(IsLaunchAllowedBy(ToolLaunchTable,
                                {L"%windir%\\System32\\DISM.exe", false, nullptr, nullptr},
                                [] { return std::wstring(kHarbourDesk); }));
  EXPECT_EQ(files_.log.Records().front().component, L"");
}

TEST_F(ToolLaunch, NoFailingCallTurnsANoIntoAYes) {
  const char* const failing[] = {"ExpandEnvironmentStringsW",
                                 "GetFullPathNameW",
                                 "CommandLineToArgvW",
                                 "WTHelperProvDataFromStateData",
                                 "WTHelperGetProvSignerFromChain",
                                 "CreateFileW"};
  // All of them answer zero or null; the files are signed by nobody, then by a stranger.
  const auto fail = +[]() -> ULONG_PTR {
    SetLastError(ERROR_ACCESS_DENIED);
    return 0;
  };
  for (const std::uint32_t verdict : {std::uint32_t{0x800B0100}, kUntrustedRoot}) {
    files_.SignAll(verdict, ServiceTrustedKeys.front());
    for (const char* name : failing) {
      const Standin::ImportPatch patch(name, fail);
      for (const wchar_t* tool : kTools) {
        EXPECT_FALSE(Ask(ToolLaunchTable, System32(tool).c_str(), false, L"C:\\Windows\\a.dll"))
            << name << ' ' << tool;
      }
    }
  }
}

}  // namespace Zq::Gantry::Security
