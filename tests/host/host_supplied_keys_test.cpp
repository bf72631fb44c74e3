// With the key lists as supplied, nobody of this build is trusted: the collector, though signed by
// the development key and in a allowed place, stays out.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "host_notebook.h"

using testing::HasSubstr;
using TestSupport::NotebookRun;
using TestSupport::RunOnNotebook;

namespace {

class HostSuppliedKeys : public testing::Test {
 protected:
  void SetUp() override {
    if (!TestSupport::NotebookIsThere()) GTEST_SKIP() << "no simulated notebook on this machine";
  }
};

}  // namespace

TEST_F(HostSuppliedKeys, RefuseTheDevelopmentCollectorWithOneWarning) {
  const NotebookRun run = RunOnNotebook({L"serve-once"});
  EXPECT_EQ(run.CountInLog("[warning] [] Unable to load DataCollector library."), 1);
  const auto warnings = std::count_if(run.log.begin(), run.log.end(), [](const auto& line) {
    return line.rfind("[warning]", 0) == 0;
  });
  EXPECT_EQ(warnings, 1);
  EXPECT_EQ(run.CountInLog("[info] [] Loaded DataCollector library\\n"), 0);
}

TEST_F(HostSuppliedKeys, NoPassIsMadeAndTheCommandsStillAnswer) {
  const NotebookRun run = RunOnNotebook({L"serve-once"});
  EXPECT_EQ(run.host.exitStatus, 3u);
  EXPECT_THAT(run.host.errors, HasSubstr("no pass: the worker has ended"));
  EXPECT_THAT(run.host.output, HasSubstr(" 8  Has the data changed?          0           true\n"));
}

TEST_F(HostSuppliedKeys, PlatformItselfIsSupported) {
  // So it is the keys that keep the collector out.
  const NotebookRun run = RunOnNotebook({L"command", L"7"});
  EXPECT_EQ(run.host.output, "1\n");
}
