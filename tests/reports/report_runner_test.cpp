#include "reports/report_runner.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "import_patch.h"
#include "reports/real_tool.h"
#include "reports/report_commands.h"
#include "support/real_windows.h"
#include "support/temp_folder.h"

using namespace TestSupport;
using Standin::ImportPatch;
using testing::StartsWith;
using Zq::Gantry::Server::Services::Wattleaf::kEnergyReportCommand;
using Zq::Gantry::Server::Services::Wattleaf::kPowerReportCommand;
using Zq::Gantry::Server::Services::Wattleaf::RunReportTool;

namespace {

// Excludes the current directory from the search for programs.
constexpr wchar_t kExcludeVariable[] = L"NoDefaultCurrentDirectoryInExePath";

class RunReportToolTest : public testing::Test {
 protected:
  RunReportToolTest() {
    SetEnvironmentVariableW(kExcludeVariable, nullptr);
    tool.Set(L"DAYS", L"1");
  }
  ~RunReportToolTest() override { SetEnvironmentVariableW(kExcludeVariable, nullptr); }

  int Run(const char* commandLine) const {
    return RunReportTool(tool.Folder().Path().c_str(), commandLine);
  }
  std::wstring File(const wchar_t* name) const { return tool.Folder().File(name); }

  RealTool tool;
};

std::optional<std::wstring> ExcludeVariable() {
  std::wstring value(32 * 1024, L'\0');
  SetLastError(ERROR_SUCCESS);
  value.resize(
      GetEnvironmentVariableW(kExcludeVariable, value.data(), static_cast<DWORD>(value.size())));
  if (GetLastError() == ERROR_ENVVAR_NOT_FOUND) return std::nullopt;
  return value;
}

/// A program that fails with the tool's arguments and writes no report.
void CopyDecoy(const std::wstring& path) {
  wchar_t system[MAX_PATH] = {};
  GetSystemDirectoryW(system, MAX_PATH);
  ASSERT_TRUE(CopyFileW((std::wstring(system) + L"\\where.exe").c_str(), path.c_str(),
                        /*bFailIfExists=*/TRUE));
}

constexpr char kDecoyScript[] = "@echo started> started.txt\r\n@exit /b 7\r\n";

int g_searchesCurrentDirectory = -1;

int __cdecl QueryTheSystemRule(const char*) {
  g_searchesCurrentDirectory = NeedCurrentDirectoryForExePathW(L"POWERCFG");
  return 0;
}

}  // namespace

TEST_F(RunReportToolTest, RunsTheToolInTheFolderAndKeepsItAsCurrentDirectory) {
  EXPECT_EQ(Run(kPowerReportCommand), 0);
  EXPECT_THAT(ReadWholeFile(File(L"Powerlog.xml")), StartsWith("<?xml"));
  EXPECT_EQ(CurrentDirectory(), tool.Folder().Path());
}

TEST_F(RunReportToolTest, RunsTheToolForEnergyProblems) {
  EXPECT_EQ(Run(kEnergyReportCommand), 0);
  EXPECT_THAT(ReadWholeFile(File(L"EnergyReport.xml")), StartsWith("<?xml"));
}

TEST_F(RunReportToolTest, ReturnsTheExitStatusOfTheTool) {
  for (const int status : {1, 5, 50, 255, 9009, -1}) {
    tool.Set(L"STATUS", std::to_wstring(status));
    EXPECT_EQ(Run(kPowerReportCommand), status);
    EXPECT_EQ(Run(kEnergyReportCommand), status);
  }
}

TEST_F(RunReportToolTest, FailsWhenTheToolIsNotFound) {
  tool.Hide();
  EXPECT_NE(Run(kPowerReportCommand), 0);
  EXPECT_FALSE(FileExists(File(L"Powerlog.xml")));
}

TEST_F(RunReportToolTest, RunsInTheCurrentDirectoryWhenTheFolderCannotBeEntered) {
  ASSERT_TRUE(SetCurrentDirectoryW(tool.Folder().Path().c_str()));
  EXPECT_EQ(RunReportTool(File(L"missing").c_str(), kPowerReportCommand), 0);
  EXPECT_TRUE(FileExists(File(L"Powerlog.xml")));
}

TEST_F(RunReportToolTest, ExcludesTheFolderFromTheSearchDuringTheCall) {
  EXPECT_EQ(Run("set NoDefaultCurrentDirectoryInExePath>seen.txt"), 0);
  EXPECT_THAT(ReadWholeFile(File(L"seen.txt")), StartsWith("NoDefaultCurrentDirectoryInExePath=1"));
  EXPECT_EQ(ExcludeVariable(), std::nullopt);
}

TEST_F(RunReportToolTest, SystemRuleExcludesTheFolderDuringTheCall) {
  const ImportPatch patch("system", &QueryTheSystemRule);
  EXPECT_TRUE(NeedCurrentDirectoryForExePathW(L"POWERCFG"));
  Run(kPowerReportCommand);
  EXPECT_EQ(g_searchesCurrentDirectory, FALSE);
  EXPECT_TRUE(NeedCurrentDirectoryForExePathW(L"POWERCFG"));
}

TEST_F(RunReportToolTest, RestoresThePreviousValueOfTheVariable) {
  for (const std::wstring& before :
       {std::wstring(L"0"), std::wstring(), std::wstring(5000, L'v')}) {
    SetEnvironmentVariableW(kExcludeVariable, before.c_str());
    // What an earlier call left says nothing about an empty value.
    SetLastError(ERROR_ENVVAR_NOT_FOUND);
    Run("set NoDefaultCurrentDirectoryInExePath>seen.txt");
    EXPECT_THAT(ReadWholeFile(File(L"seen.txt")),
                StartsWith("NoDefaultCurrentDirectoryInExePath=1\r\n"));
    EXPECT_EQ(ExcludeVariable(), before);
  }
}

TEST_F(RunReportToolTest, DoesNotStartAProgramOfTheToolsNameInTheFolder) {
  if (IsWine()) GTEST_SKIP() << "Wine's interpreter ignores the variable";
  CopyDecoy(File(L"POWERCFG.com"));
  CopyDecoy(File(L"POWERCFG.exe"));
  for (const wchar_t* name : {L"POWERCFG.bat", L"POWERCFG.cmd", L"POWERCFG"}) {
    WriteWholeFile(File(name), kDecoyScript);
  }
  EXPECT_EQ(Run(kPowerReportCommand), 0);
  EXPECT_TRUE(FileExists(File(L"Powerlog.xml")));
  EXPECT_EQ(Run(kEnergyReportCommand), 0);
  EXPECT_TRUE(FileExists(File(L"EnergyReport.xml")));
  EXPECT_FALSE(FileExists(File(L"started.txt")));
}

TEST_F(RunReportToolTest, StartsTheSystemsInterpreterDespiteADecoyInTheFolder) {
  WriteWholeFile(File(L"cmd.bat"), kDecoyScript);
  WriteWholeFile(File(L"cmd.exe"), "no program");
  EXPECT_EQ(Run(kPowerReportCommand), 0);
  EXPECT_TRUE(FileExists(File(L"Powerlog.xml")));
  EXPECT_FALSE(FileExists(File(L"started.txt")));
}
