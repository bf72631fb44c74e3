#include "security/access/tool_launch.h"

#include <windows.h>

#include <gmock/gmock.h>

#include <utility>

#include "security/access/tool_launch_fixture.h"
#include "support/temp_folder.h"

// What a matching row requires: caller, mode, signature and command line.
namespace Zq::Gantry::Security {
namespace {

using testing::ElementsAre;
using TestSupport::kHarbourDesk;
using TestSupport::kSfc;
using TestSupport::kTools;
using TestSupport::SfcRow;
using TestSupport::System32;
using TestSupport::ToolLaunch;

/// A check that records the command lines it gets.
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

TEST_F(ToolLaunch, RefusesAnotherFamilyForEveryRow) {
  for (const wchar_t* family : {L"C7E40B19.ZQHarbourDesk_q7m3xk2tdw9pb", L"harbourdesk",
                                L"c7e40b19.zqharbourdesk_q7m3xk2tdw9pa"}) {
    family_ = family;
    for (const wchar_t* tool : kTools) EXPECT_FALSE(IsAllowed(System32(tool))) << tool;
  }
  EXPECT_TRUE(files_.trust.calls.empty());
}

TEST_F(ToolLaunch, RefusesACallerOutsideAPackageForEveryRow) {
  family_.clear();
  for (const wchar_t* tool : kTools) EXPECT_FALSE(IsAllowed(System32(tool))) << tool;
}

TEST_F(ToolLaunch, DoesNotIdentifyTheCallerForARowWithoutFamilies) {
  family_.clear();
  EXPECT_TRUE(IsAllowed(SfcRow({{}, true, nullptr}), kSfc));
  EXPECT_EQ(familyQueries_, 0);
}

TEST_F(ToolLaunch, RefusesARowThatIsClosedInRestrictedMode) {
  for (const std::vector<std::wstring>& families :
       {std::vector<std::wstring>{}, std::vector<std::wstring>{kHarbourDesk}}) {
    const ToolLaunchRules table = SfcRow({families, false, nullptr});
    EXPECT_TRUE(IsAllowed(table, kSfc, /*restricted=*/false));
    files_.trust.calls.clear();
    EXPECT_FALSE(IsAllowed(table, kSfc, /*restricted=*/true));
    EXPECT_TRUE(files_.trust.calls.empty());
  }
  EXPECT_EQ(familyQueries_, 2) << "the caller is identified before the mode is checked";
}

TEST_F(ToolLaunch, RequiresOnlyThatTheSystemAcceptsTheTool) {
  struct Row {
    std::uint32_t verdict;
    bool allowed;
  };
  for (const Row& row : {Row{kVerified, true}, Row{kVerifiedButExpired, true},
                         Row{kUntrustedRoot, false}, Row{0x80096010, false}}) {
    files_.SignAll(row.verdict, ServiceTrustedKeys.front());
    EXPECT_EQ(IsAllowed(System32(L"sfc.exe")), row.allowed) << std::hex << row.verdict;
  }
  files_.trust.embedded.clear();
  EXPECT_FALSE(IsAllowed(System32(L"sfc.exe")));
}

TEST_F(ToolLaunch, ChecksTheSignaturesOfTheExpandedPath) {
  EXPECT_TRUE(IsAllowed(kSfc));
  EXPECT_THAT(files_.VerifiedFiles(), ElementsAre(L"C:\\Windows\\System32\\sfc.exe"));
}

TEST_F(ToolLaunch, AllowsAToolOutsideProtectedPlaces) {
  const ToolLaunchRules table = {{L"D:\\Users\\tool.exe", {{}, true, nullptr}}};
  EXPECT_TRUE(IsAllowed(table, L"D:\\Users\\tool.exe"));
}

TEST_F(ToolLaunch, ReturnsTheAnswerOfTheRowsArgumentCheck) {
  RecordingCheck check;
  EXPECT_TRUE(IsAllowed(check.Table(), kSfc, false, L"/scannow"));
  check.answer = false;
  EXPECT_FALSE(IsAllowed(check.Table(), kSfc, false, L"\"a b\" c"));
  EXPECT_THAT(check.lines, ElementsAre(L"/scannow", L"\"a b\" c"));
}

TEST_F(ToolLaunch, JudgesTheCommandLineOfARefusedToolToo) {
  RecordingCheck check;
  files_.trust.embedded.clear();
  EXPECT_FALSE(IsAllowed(check.Table(), kSfc, false, L"x"));
  EXPECT_THAT(check.lines, ElementsAre(L"x"));
}

TEST_F(ToolLaunch, JudgesTheCommandLineAfterTheTool) {
  std::vector<std::size_t> verdictsBefore;
  const ToolLaunchRules table = SfcRow({{}, true, [&](const std::wstring&) {
                                          verdictsBefore.push_back(files_.trust.calls.size());
                                          return true;
                                        }});
  EXPECT_TRUE(IsAllowed(table, kSfc));
  EXPECT_THAT(verdictsBefore, ElementsAre(files_.trust.calls.size()));
  EXPECT_FALSE(files_.trust.calls.empty());
}

TEST_F(ToolLaunch, TakesANullCommandLineAsEmpty) {
  RecordingCheck check;
  EXPECT_TRUE(IsAllowed(check.Table(), kSfc, false, nullptr));
  EXPECT_THAT(check.lines, ElementsAre(L""));
  EXPECT_TRUE(IsAllowed(ToolLaunchTable, System32(L"regsvr32.exe").c_str(), false, nullptr));
}

TEST_F(ToolLaunch, RequiresTheServicesKeyForFilesOfRegsvr32AndRundll32) {
  for (const wchar_t* tool : {L"regsvr32.exe", L"rundll32.exe"}) {
    const std::wstring path = System32(tool);
    files_.SignAll(kVerified, "30 0a");
    EXPECT_FALSE(IsAllowed(ToolLaunchTable, path.c_str(), false, L"C:\\Windows\\a.dll")) << tool;
    files_.SignAllForTheService();
    EXPECT_TRUE(IsAllowed(ToolLaunchTable, path.c_str(), false, L"C:\\Windows\\a.dll")) << tool;
    EXPECT_FALSE(IsAllowed(ToolLaunchTable, path.c_str(), false, L"D:\\a.dll")) << tool;
  }
}

TEST_F(ToolLaunch, AcceptsASignatureThroughACatalog) {
  const TestSupport::TempFolder folder;
  const std::wstring tool = folder.File(L"tool.exe");
  TestSupport::WriteWholeFile(tool, "content");
  std::swap(files_.trust.byCatalog, files_.trust.embedded);
  const ToolLaunchRules table = {{tool, {{}, true, nullptr}}};
  EXPECT_FALSE(IsAllowed(table, tool.c_str()));
  files_.catalogs.catalogs = {L"C:\\catalogs\\first.cat"};
  EXPECT_TRUE(IsAllowed(table, tool.c_str()));
}

TEST_F(ToolLaunch, StillRefusesWhenACallFails) {
  const char* const failing[] = {"ExpandEnvironmentStringsW",
                                 "GetFullPathNameW",
                                 "CommandLineToArgvW",
                                 "WTHelperProvDataFromStateData",
                                 "WTHelperGetProvSignerFromChain",
                                 "CreateFileW"};
  // Each call returns zero or null. The files are unsigned, then signed under an untrusted root.
  const auto fail = +[]() -> ULONG_PTR {
    SetLastError(ERROR_ACCESS_DENIED);
    return 0;
  };
  for (const std::uint32_t verdict : {std::uint32_t{0x800B0100}, kUntrustedRoot}) {
    files_.SignAll(verdict, ServiceTrustedKeys.front());
    for (const char* name : failing) {
      const Standin::ImportPatch patch(name, fail);
      for (const wchar_t* tool : kTools) {
        EXPECT_FALSE(
            IsAllowed(ToolLaunchTable, System32(tool).c_str(), false, L"C:\\Windows\\a.dll"))
            << name << ' ' << tool;
      }
    }
  }
}

}  // namespace
}  // namespace Zq::Gantry::Security
