#include "security/access/tool_launch.h"

#include <windows.h>

#include <gmock/gmock.h>

#include "security/access/tool_launch_fixture.h"

// Which row of the table a tool's path matches, and what is logged for it.
namespace Zq::Gantry::Security {
namespace {

using testing::ElementsAre;
using TestSupport::Info;
using TestSupport::kHarbourDesk;
using TestSupport::kSfc;
using TestSupport::kTools;
using TestSupport::System32;
using TestSupport::ToolLaunch;

TEST_F(ToolLaunch, AllowsEachToolOfTheTable) {
  for (const wchar_t* tool : kTools) EXPECT_TRUE(IsAllowed(System32(tool))) << tool;
  EXPECT_EQ(familyQueries_, 6);
}

TEST_F(ToolLaunch, AllowsEachToolInRestrictedMode) {
  for (const wchar_t* tool : kTools) {
    EXPECT_TRUE(IsAllowed(ToolLaunchTable, System32(tool).c_str(), /*restricted=*/true)) << tool;
  }
}

TEST_F(ToolLaunch, RefusesAnyOtherToolWithoutCheckingItsSignature) {
  for (const wchar_t* tool : {L"cmd.exe", L"powershell.exe", L"notepad.exe"}) {
    EXPECT_FALSE(IsAllowed(System32(tool))) << tool;
  }
  EXPECT_FALSE(IsAllowed(L"C:\\Windows\\sfc.exe"));
  EXPECT_FALSE(IsAllowed(L"D:\\Windows\\System32\\sfc.exe"));
  EXPECT_TRUE(files_.trust.calls.empty());
  EXPECT_EQ(familyQueries_, 0);
}

TEST_F(ToolLaunch, MatchesThePathInAnyCase) {
  EXPECT_TRUE(IsAllowed(L"c:\\WINDOWS\\system32\\SFC.EXE"));
  EXPECT_TRUE(IsAllowed(L"C:\\windows\\SYSTEM32\\dism.exe"));
}

TEST_F(ToolLaunch, MatchesThePathWithVariablesAndDotSegments) {
  EXPECT_TRUE(IsAllowed(kSfc));
  EXPECT_TRUE(IsAllowed(L"%WINDIR%\\Temp\\..\\System32\\.\\sfc.exe"));
}

TEST_F(ToolLaunch, DoesNotMatchAPathThatMerelyBeginsLikeATools) {
  EXPECT_FALSE(IsAllowed(System32(L"sfc.exe.bak")));
  EXPECT_FALSE(IsAllowed(System32(L"sfc.exe\\x")));
  EXPECT_FALSE(IsAllowed(System32(L"sfc.ex")));
  EXPECT_TRUE(files_.trust.calls.empty());
}

TEST_F(ToolLaunch, MatchesNoRowForANullOrEmptyPath) {
  EXPECT_FALSE(IsAllowed(ToolLaunchTable, nullptr));
  EXPECT_FALSE(IsAllowed(L""));
  EXPECT_TRUE(files_.trust.calls.empty());
}

TEST_F(ToolLaunch, DoesNotMatchAnEmptyExpansionWithAnEmptyKey) {
  const ToolLaunchRules table = {{L"", {{}, true, nullptr}}};
  EXPECT_FALSE(IsAllowed(table, L""));
  EXPECT_FALSE(IsAllowed(table, nullptr));
}

TEST_F(ToolLaunch, MatchesNoRowWhenTheExpansionFails) {
  const Standin::ImportPatch expand(
      "ExpandEnvironmentStringsW", +[](LPCWSTR, LPWSTR, DWORD) -> DWORD { return 0; });
  for (const wchar_t* tool : kTools) EXPECT_FALSE(IsAllowed(System32(tool))) << tool;
}

TEST_F(ToolLaunch, StopsAtTheFirstMatchingRow) {
  const ToolLaunchRules table = {
      {L"%windir%\\System32\\SFC.EXE", {{L"Nobody_1"}, true, nullptr}},
      {kSfc, {{}, true, nullptr}},
  };
  EXPECT_FALSE(IsAllowed(table, kSfc));
}

TEST_F(ToolLaunch, LogsTheExpansionsOfToolAndKeyForTheComponent) {
  EXPECT_TRUE(IsAllowed(L"%windir%\\Temp\\..\\System32\\dism.exe"));
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

TEST_F(ToolLaunch, MatchesNoRowForHostilePaths) {
  const std::wstring tool = System32(L"sfc.exe");
  for (const std::wstring& path :
       {std::wstring(1'000'000, L'\\'), std::wstring(1'000'000, L'%'),
        tool + std::wstring(1'000'000, L'e'), std::wstring(1'000'000, L'.') + tool,
        tool + L"\xD800", L"\xDFFF" + tool}) {
    EXPECT_FALSE(IsAllowed(path)) << path.size();
  }
  EXPECT_TRUE(files_.trust.calls.empty());
}

TEST_F(ToolLaunch, TakesANullComponentAsEmpty) {
  EXPECT_TRUE(IsLaunchAllowedBy(ToolLaunchTable,
                                {L"%windir%\\System32\\DISM.exe", false, nullptr, nullptr},
                                [] { return std::wstring(kHarbourDesk); }));
  EXPECT_EQ(files_.log.Records().front().component, L"");
}

}  // namespace
}  // namespace Zq::Gantry::Security
