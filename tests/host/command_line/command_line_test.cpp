#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "host/notebook/host_process.h"
#include "support/program_folder.h"
#include "support/temp_folder.h"

using testing::EndsWith;
using testing::HasSubstr;
using TestSupport::HostRun;
using TestSupport::RunHost;

namespace {

rapidjson::Document Parse(const HostRun& run) {
  rapidjson::Document document;
  document.Parse(run.output.c_str());
  EXPECT_FALSE(document.HasParseError()) << run.output;
  return document;
}

/// The names that the help of the program lists after its heading "Subcommands:".
std::vector<std::string> SubcommandsIn(const std::string& help) {
  std::istringstream lines(help.substr(std::min(help.find("Subcommands:"), help.size())));
  std::vector<std::string> names;
  std::string line;
  std::getline(lines, line);
  while (std::getline(lines, line) && line.starts_with("  ")) {
    // The rest of a description that goes over two lines is indented further.
    if (line[2] != ' ') names.push_back(line.substr(2, line.find(' ', 2) - 2));
  }
  return names;
}

}  // namespace

TEST(HostCommandLine, WrongArgumentsPrintUsageAndEndWithStatus2) {
  const std::vector<std::vector<std::wstring>> wrong = {
      {},
      {L"serve"},
      {L"command"},
      {L"command", L"eight"},
      {L"command", L"-1"},
      {L"command", L"8", L"input", L"more"},
      {L"serve-once", L"more"},
      {L"serve-once", L"--unknown"},
      {L"serve-once", L"--limit", L"0"},
      {L"serve-once", L"command", L"8"},
      {L"command", L"8", L"--real-time"},
      {L"command", L"2", L"--days", L"-1"},
      {L"command", L"2", L"--days", L"week"},
      {L"command", L"2", L"--icons", L"C:\\a?7"},
      {L"report"},
      {L"report", L"a.html", L"b.html"},
      {L"command", L"1", L"--csv"},
      {L"command", L"4", L"--csv", L"--json"},
      {L"export", L"--csv"},
      {L"export", L"--format", L"xml"},
      {L"metrics"},
      {L"metrics", L"C:\\a.txt"},
  };
  for (const auto& arguments : wrong) {
    const HostRun run = RunHost(arguments);
    const std::string label = testing::PrintToString(arguments);
    EXPECT_EQ(run.exitStatus, 2u) << label;
    EXPECT_THAT(run.errors, HasSubstr("Usage: wattleaf_host")) << label;
    EXPECT_EQ(run.output, "") << label;
  }
}

TEST(HostCommandLine, HelpIsPrintedToStandardOutput) {
  const HostRun run = RunHost({L"--help"});
  EXPECT_EQ(run.exitStatus, 0u);
  EXPECT_THAT(run.output, HasSubstr("Usage: wattleaf_host"));
  EXPECT_THAT(run.output, HasSubstr("serve-once"));
  EXPECT_EQ(run.errors, "");
}

TEST(HostCommandLine, VersionIsPrintedAsOneLine) {
  const HostRun run = RunHost({L"--version"});
  EXPECT_EQ(run.exitStatus, 0u);
  EXPECT_EQ(run.output, "wattleaf_host " WATTLEAF_HOST_VERSION "\n");
}

TEST(HostSingleCommand, PrintsOnlyTheText) {
  const HostRun run = RunHost({L"command", L"8"});
  EXPECT_EQ(run.exitStatus, 0u);
  EXPECT_EQ(run.output, "true\n");
}

TEST(HostSingleCommand, DoesNotStartCollection) {
  const HostRun run = RunHost({L"command", L"10"});
  EXPECT_EQ(run.exitStatus, 0u);
  EXPECT_EQ(run.output, "false\n");
}

TEST(HostSingleCommand, PrintsAnotherStatusInHexAndEndsWithStatus1) {
  const HostRun run = RunHost({L"command", L"99"});
  EXPECT_EQ(run.exitStatus, 1u);
  EXPECT_EQ(run.output, "");
  EXPECT_EQ(run.errors, "wattleaf_host: command 99: status 0x20000001, unknown command\n");
}

TEST(HostSingleCommand, SaysThatTheLedgerIsEmptyWithoutAPass) {
  const HostRun run = RunHost({L"command", L"1"});
  EXPECT_EQ(run.exitStatus, 0u);
  EXPECT_EQ(run.output, "0.000000\n");
  EXPECT_THAT(run.errors, HasSubstr("the ledger in memory is empty without a pass"));
}

TEST(HostJson, HasTheIconFolderAndTheDaysOfCommand2) {
  const auto byDefault = Parse(RunHost({L"command", L"8", L"--json"}));
  EXPECT_THAT(byDefault["iconFolder"].GetString(), EndsWith("\\Icons"));
  EXPECT_EQ(byDefault["days"].GetUint(), 30u);
  const auto chosen =
      Parse(RunHost({L"command", L"8", L"--json", L"--icons", L"C:\\i", L"--days", L"7"}));
  EXPECT_STREQ(chosen["iconFolder"].GetString(), "C:\\i");
  EXPECT_EQ(chosen["days"].GetUint(), 7u);
}

TEST(HostJson, IsOneObjectWithTheResultOfTheCommand) {
  const HostRun run = RunHost({L"command", L"8", L"--json"});
  EXPECT_EQ(run.exitStatus, 0u);
  EXPECT_EQ(run.errors, "");
  const auto document = Parse(run);
  ASSERT_TRUE(document.IsObject());
  const auto& commands = document["commands"];
  ASSERT_EQ(commands.Size(), 1u);
  EXPECT_EQ(commands[0]["number"].GetUint(), 8u);
  EXPECT_EQ(commands[0]["status"].GetInt(), 0);
  EXPECT_STREQ(commands[0]["text"].GetString(), "true");
}

TEST(HostJson, DoesNotChangeTheExitStatus) {
  const HostRun run = RunHost({L"--json", L"command", L"99"});
  EXPECT_EQ(run.exitStatus, 1u);
  const auto document = Parse(run);
  EXPECT_EQ(document["commands"][0]["status"].GetInt(), 0x20000001);
  EXPECT_TRUE(document["commands"][0]["text"].IsNull());
}

TEST(HostJson, ListsTheSimulatedCallsUnlessTheyAreTurnedOff) {
  const auto off = Parse(RunHost({L"command", L"8", L"--json", L"--no-simulated-calls"}));
  EXPECT_EQ(off["simulatedCalls"].Size(), 0u);
  const auto on = Parse(RunHost({L"command", L"8", L"--json"}));
  for (const auto& call : on["simulatedCalls"].GetArray()) {
    EXPECT_GT(call["name"].GetStringLength(), 0u);
    EXPECT_GT(call["reason"].GetStringLength(), 0u);
  }
}

TEST(HostProgram, StartsWithoutLoggingDllAndSaysThatTheLibraryCannotBeLoaded) {
  const TestSupport::TempFolder folder;
  for (const wchar_t* name : {L"wattleaf_host.exe", L"WattleafService.dll", L"libstdc++-6.dll",
                              L"libgcc_s_seh-1.dll", L"libwinpthread-1.dll"}) {
    // With MSVC there are no runtime libraries beside the programs.
    CopyFileW(TestSupport::PathBesideProgram(name).c_str(), folder.File(name).c_str(), FALSE);
  }
  const HostRun run =
      TestSupport::RunProgram(folder.File(L"wattleaf_host.exe"), {L"command", L"8"});
  EXPECT_EQ(run.exitStatus, 4u);
  EXPECT_THAT(run.errors, HasSubstr("wattleaf_host: cannot load "));
  EXPECT_THAT(run.errors, HasSubstr("\\WattleafService.dll (Windows error "));
}

TEST(HostSingleCommand, PrintsASeriesAsCommaSeparatedValues) {
  const HostRun run = RunHost({L"command", L"5", L"--csv"});
  EXPECT_EQ(run.exitStatus, 0u);
  EXPECT_THAT(run.output, testing::StartsWith("command,position,label,value,unit,icon\r\n5,1,"));
  EXPECT_THAT(run.output, EndsWith(",0,Wh,\r\n"));
}

TEST(HostJson, HasTheTimeWithAnOffsetAndTheParsedValue) {
  const auto document = Parse(RunHost({L"command", L"8", L"--json"}));
  EXPECT_EQ(document["formatVersion"].GetUint(), 1u);
  EXPECT_THAT(document["time"].GetString(),
              testing::ContainsRegex("^....-..-..T..:..:...\\d\\d:\\d\\d$"));
  EXPECT_TRUE(document["zone"].IsString());
  EXPECT_TRUE(document["commands"][0]["value"].GetBool());
}

TEST(HostCommandLine, HelpOfEverySubcommandHasOneExampleOfIt) {
  const auto names = SubcommandsIn(RunHost({L"--help"}).output);
  EXPECT_THAT(names, testing::IsSupersetOf({"serve-once", "doctor"}));
  EXPECT_EQ(names.size(), 7U);
  for (const std::string& name : names) {
    const std::string help = RunHost({{name.begin(), name.end()}, L"--help"}).output;
    const std::size_t example = help.find("Example: wattleaf_host " + name);
    ASSERT_NE(example, std::string::npos) << help;
    EXPECT_EQ(help.find("Example:", example + 1), std::string::npos) << help;
  }
}
