// serve-once in a host outside the allowed folders, where the collector is never loaded.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <string>

#include "host/notebook/host_process.h"
#include "support/scoped_variable.h"
#include "support/temp_folder.h"

using testing::AnyOf;
using testing::ContainsRegex;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using TestSupport::HostRun;
using TestSupport::RunHost;

TEST(HostServeOnce, ReportsThatTheWorkerEndedWithoutAPass) {
  const HostRun run = RunHost({L"serve-once"});
  EXPECT_EQ(run.exitStatus, 3u);
  EXPECT_THAT(run.errors, HasSubstr("no pass: the worker has ended"));
  EXPECT_THAT(run.output, HasSubstr("pass          not started"));
}

TEST(HostServeOnce, PrintsAllTenCommandsWithoutAPass) {
  const HostRun run = RunHost({L"serve-once"});
  for (const char* row : {"\n 1  ", "\n 2  ", "\n 3  ", "\n 4  ", "\n 5  ", "\n 6  ", "\n 7  ",
                          "\n 8  ", "\n 9  ", "\n10  "}) {
    EXPECT_THAT(run.output, HasSubstr(row));
  }
}

TEST(HostServeOnce, SaysThatTheSleepsAreSkipped) {
  EXPECT_THAT(RunHost({L"serve-once"}).errors,
              HasSubstr("90 seconds and its sleep of a day are skipped"));
}

TEST(HostServeOnce, PrintsTheDataFolderTheIconsAndTheLogLast) {
  const TestSupport::TempFolder folder;
  const TestSupport::ScopedVariable log(L"WATTLEAF_LOG_FILE", folder.File(L"w\u00E4rme.log"));
  EXPECT_THAT(RunHost({L"serve-once"}).output,
              ContainsRegex("\n  data folder   "
                            "C:.ProgramData.ZQ.TelemetryDataCollector.PCMCollector\n"
                            "  icons         .*.Icons\n"
                            "  log           .*w\xC3\xA4rme.log\n$"));
}

TEST(HostServeOnce, SaysThatTheLogGoesToStandardErrorIfNoFileIsNamed) {
  const TestSupport::ScopedVariable log(L"WATTLEAF_LOG_FILE", L"");
  EXPECT_THAT(RunHost({L"serve-once"}).output, EndsWith("  log           standard error\n"));
}

TEST(HostServeOnce, HasThePassAndAllCommandsInTheJson) {
  const HostRun run = RunHost({L"serve-once", L"--json"});
  EXPECT_EQ(run.exitStatus, 3u);
  rapidjson::Document document;
  ASSERT_FALSE(document.Parse(run.output.c_str()).HasParseError()) << run.output;
  EXPECT_STREQ(document["pass"].GetString(), "not started");
  ASSERT_EQ(document["commands"].Size(), 10u);
  for (rapidjson::SizeType i = 0; i < 10; ++i) {
    EXPECT_EQ(document["commands"][i]["number"].GetUint(), i + 1);
  }
}

TEST(HostServeOnce, DoesNotSkipTheDelayInRealTime) {
  const HostRun run = RunHost({L"serve-once", L"--real-time", L"--limit", L"1"});
  EXPECT_EQ(run.exitStatus, 3u);
  EXPECT_THAT(run.errors, Not(HasSubstr("skipped")));
  EXPECT_THAT(run.errors, HasSubstr("no pass within 1 seconds"));
  EXPECT_THAT(run.output, HasSubstr("pass          still running"));
}

TEST(HostServeOnce, RunsOnlyCommandsThatDoNotWaitWhileThePassIsRunning) {
  const HostRun run = RunHost({L"serve-once", L"--json", L"--real-time", L"--limit", L"1"});
  rapidjson::Document document;
  ASSERT_FALSE(document.Parse(run.output.c_str()).HasParseError()) << run.output;
  ASSERT_EQ(document["commands"].Size(), 2u);
  EXPECT_EQ(document["commands"][0]["number"].GetUint(), 8u);
  EXPECT_EQ(document["commands"][1]["number"].GetUint(), 10u);
}

TEST(HostZone, IgnoresTheVariableTz) {
  // The chart of command 4, made before and after as well, since an hour may end meanwhile.
  const auto hours = [] { return RunHost({L"command", L"4"}).output; };
  const std::string before = hours();
  std::string withVariable;
  {
    // UTC+5 for a C library that reads the variable.
    const TestSupport::ScopedVariable zone(L"TZ", L"XYZ-5");
    withVariable = hours();
  }
  EXPECT_THAT(withVariable, AnyOf(before, hours()));
  EXPECT_THAT(withVariable, HasSubstr("Last 12 hours, Wh (command 4)"));
}
