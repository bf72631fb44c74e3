// The whole road with development keys: the signed collector is let in, and a pass is made.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <string>

#include "host_notebook.h"

using testing::HasSubstr;
using TestSupport::NotebookIsThere;
using TestSupport::NotebookRun;
using TestSupport::RunOnNotebook;

namespace {

class HostNotebook : public testing::Test {
 protected:
  void SetUp() override {
    if (!NotebookIsThere()) GTEST_SKIP() << "no simulated notebook on this machine";
  }
};

}  // namespace

TEST_F(HostNotebook, ServeOnceMakesAPassAndAnswers) {
  const NotebookRun run = RunOnNotebook({L"serve-once"});
  EXPECT_EQ(run.host.exitStatus, 0u) << run.host.errors;
  EXPECT_THAT(run.host.output, HasSubstr("pass          completed"));
  for (const char* chart : {"Last 12 hours, Wh", "Last 7 days, Wh", "Last 6 months, Wh"}) {
    EXPECT_THAT(run.host.output, HasSubstr(chart));
  }
}

TEST_F(HostNotebook, CollectorIsLoadedWithoutAWarning) {
  const NotebookRun run = RunOnNotebook({L"serve-once"});
  EXPECT_EQ(run.CountInLog("[info] [] Loaded DataCollector library\\n"), 1);
  EXPECT_EQ(run.CountInLog("[info] [] DataCollector StartCollecting() success\\n "), 1);
  EXPECT_EQ(run.CountInLog("[warning] [] Unable to load DataCollector library."), 0);
}

TEST_F(HostNotebook, PassLeavesEnergyInTheAnswers) {
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

TEST_F(HostNotebook, PlayedCallsOfTheLibraryAreNamed) {
  const NotebookRun run = RunOnNotebook({L"command", L"8", L"--json"});
  EXPECT_THAT(run.host.output, HasSubstr(R"("name":"RpcServerInqCallAttributesW")"));
  EXPECT_THAT(run.host.output, HasSubstr(R"("name":"CryptCATAdminAcquireContext2")"));
  EXPECT_THAT(run.host.output, HasSubstr(R"("name":"CryptCATAdminCalcHashFromFileHandle2")"));
}
