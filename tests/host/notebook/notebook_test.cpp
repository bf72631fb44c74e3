// From the start to the answers, with development keys: the signed collector is loaded, and a pass
// is completed.

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "answers/answer.h"
#include "host/notebook/notebook.h"
#include "host/notebook/notebook_days.h"
#include "support/scoped_variable.h"
#include "support/temp_folder.h"

using testing::Contains;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using TestSupport::NotebookRun;
using TestSupport::OnNotebook;
using TestSupport::RunOnNotebook;
using TestSupport::ScopedVariable;
using WattleafHost::TryReadRanking;

namespace {

class HostNotebook : public OnNotebook {};

constexpr wchar_t kStore[] =
    L"C:\\ProgramData\\ZQ\\TelemetryDataCollector\\PCMCollector\\Powerlog.json";

std::string TextOf(const NotebookRun& run, unsigned int command) {
  rapidjson::Document document;
  if (document.Parse(run.host.output.c_str()).HasParseError()) return "no JSON: " + run.host.output;
  const auto& answer = document["commands"][command - 1]["text"];
  return answer.IsString() ? answer.GetString() : "no text";
}

bool IsAscii(const std::string& text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c > 0; });
}

std::wstring ToWide(const std::string& ascii) { return {ascii.begin(), ascii.end()}; }

}  // namespace

TEST_F(HostNotebook, ServeOnceCompletesAPassAndPrintsTheAnswers) {
  const NotebookRun run = RunOnNotebook({L"serve-once"});
  EXPECT_EQ(run.host.exitStatus, 0u) << run.host.errors;
  EXPECT_THAT(run.host.output, HasSubstr("pass          completed"));
  for (const char* chart : {"Last 12 hours, Wh", "Last 7 days, Wh", "Last 6 months, Wh",
                            "Applications of the last 30 days"}) {
    EXPECT_THAT(run.host.output, HasSubstr(chart));
  }
  EXPECT_THAT(run.host.output, HasSubstr("[], never filled by the library"));
}

TEST_F(HostNotebook, ServeOnceWritesIconsOfApplicationsIntoTheChosenFolder) {
  const TestSupport::TempFolder folder;
  const NotebookRun run =
      RunOnNotebook({L"serve-once", L"--json", L"--icons", folder.File(L"icons")});
  const auto ranking = TryReadRanking(TextOf(run, 2));
  ASSERT_TRUE(ranking.has_value()) << run.host.output;
  EXPECT_EQ(ranking->size(), 20u);
  long icons = 0;
  for (const auto& app : *ranking) {
    // A name outside ASCII reaches the client changed, so no file has that name.
    if (app.icon.empty() || !IsAscii(app.icon)) continue;
    ++icons;
    EXPECT_EQ(TestSupport::ReadWholeFile(ToWide(app.icon)).substr(1, 3), "PNG") << app.icon;
  }
  EXPECT_GE(icons, 10);
}

TEST_F(HostNotebook, DaysOptionReachesCommand2) {
  const NotebookRun run = RunOnNotebook({L"serve-once", L"--json", L"--days", L"0"});
  EXPECT_EQ(TextOf(run, 2), "[]");
}

TEST_F(HostNotebook, OutputOfTheServiceGoesToTheLog) {
  const NotebookRun run = RunOnNotebook({L"serve-once"});
  EXPECT_THAT(run.log, Contains(StartsWith("XML parsing started at :")));
  EXPECT_THAT(run.host.output, Not(HasSubstr("XML parsing")));
  EXPECT_THAT(run.host.errors, Not(HasSubstr("XML parsing")));
}

TEST_F(HostNotebook, LogHasTheStepsOfThePassInOrder) {
  const NotebookRun run = RunOnNotebook({L"serve-once"});
  std::vector<std::ptrdiff_t> places;
  for (const char* step :
       {"[info] [] Loaded DataCollector library",
        "[info] [] DataCollector StartCollecting() success", "[info] [] Date:",
        "[info] [] Decrypting file :", "XML parsing started at :", "XML parsing completed :"}) {
    const auto line = std::find_if(run.log.begin(), run.log.end(), [step](const std::string& text) {
      return text.starts_with(step);
    });
    ASSERT_NE(line, run.log.end()) << step;
    places.push_back(line - run.log.begin());
  }
  EXPECT_TRUE(std::is_sorted(places.begin(), places.end())) << testing::PrintToString(places);
}

TEST_F(HostNotebook, FailedEnergyToolLeavesCommand2WithoutResultAndEndsWithStatus1) {
  ASSERT_EQ(RunOnNotebook({L"serve-once"}).host.exitStatus, 0u);
  DeleteFileW(kStore);
  const ScopedVariable status(L"WATTLEAF_POWERCFG_STATUS", L"5");
  const NotebookRun run = RunOnNotebook({L"serve-once"});
  EXPECT_EQ(run.host.exitStatus, 1u);
  EXPECT_THAT(run.host.output,
              HasSubstr("Top 20 applications            0x20000002  no readable store"));
  EXPECT_EQ(run.CountInLog("[error] [] Error"), 1);
}

TEST_F(HostNotebook, CollectorIsLoadedWithoutAWarning) {
  const NotebookRun run = RunOnNotebook({L"serve-once"});
  EXPECT_EQ(run.CountInLog("[info] [] Loaded DataCollector library\\n"), 1);
  EXPECT_EQ(run.CountInLog("[info] [] DataCollector StartCollecting() success\\n "), 1);
  EXPECT_EQ(run.CountInLog("[warning] [] Unable to load DataCollector library."), 0);
}

TEST_F(HostNotebook, AnswersHaveEnergyAfterAPass) {
  const TestSupport::NotebookDays days;
  const auto seed = days.SeedWhere(
      [&days](std::uint64_t one) { return days.HasEnergy(one, 1) && days.HasEnergy(one, 2); });
  const ScopedVariable chosen(L"WATTLEAF_COLLECTOR_SEED", std::to_wstring(seed));
  const NotebookRun run = RunOnNotebook({L"serve-once", L"--json"});
  rapidjson::Document document;
  ASSERT_FALSE(document.Parse(run.host.output.c_str()).HasParseError()) << run.host.output;
  EXPECT_STREQ(document["pass"].GetString(), "completed");
  const auto& commands = document["commands"];
  ASSERT_EQ(commands.Size(), 10u);
  EXPECT_GT(std::stod(commands[0]["text"].GetString()), 0.0);
  EXPECT_GT(std::stod(commands[2]["text"].GetString()), 0.0);
  EXPECT_STREQ(commands[6]["text"].GetString(), "1");
  EXPECT_STREQ(commands[9]["text"].GetString(), "true");
}

TEST_F(HostNotebook, JsonListsTheSimulatedCallsOfTheLibrary) {
  const NotebookRun run = RunOnNotebook({L"command", L"8", L"--json"});
  EXPECT_THAT(run.host.output, HasSubstr(R"("name":"RpcServerInqCallAttributesW")"));
  EXPECT_THAT(run.host.output, HasSubstr(R"("name":"CryptCATAdminAcquireContext2")"));
  EXPECT_THAT(run.host.output, HasSubstr(R"("name":"CryptCATAdminCalcHashFromFileHandle2")"));
}
