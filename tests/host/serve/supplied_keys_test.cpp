// The key lists as supplied trust no signer of this build: the collector is signed by the
// development key and lies in an allowed folder, and it is not loaded.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "host/notebook/notebook.h"

using testing::HasSubstr;
using TestSupport::InstalledHost;
using TestSupport::NotebookRun;

namespace {

class HostSuppliedKeys : public testing::Test {
 protected:
  void SetUp() override {
    if (!TestSupport::HasNotebook(host_)) GTEST_SKIP() << "no simulated notebook on this machine";
  }

  [[nodiscard]] NotebookRun Run(const std::vector<std::wstring>& arguments) const {
    return TestSupport::RunOnNotebook(arguments, host_);
  }

  const std::wstring host_ = InstalledHost(WATTLEAF_SUPPLIED_KEYS_FOLDER);
};

}  // namespace

TEST_F(HostSuppliedKeys, DevelopmentCollectorIsRefusedWithOneWarning) {
  const NotebookRun run = Run({L"serve-once"});
  EXPECT_EQ(run.CountInLog("[warning] [] Unable to load DataCollector library."), 1);
  const auto warnings = std::count_if(run.log.begin(), run.log.end(), [](const auto& line) {
    return line.rfind("[warning]", 0) == 0;
  });
  EXPECT_EQ(warnings, 1);
  EXPECT_EQ(run.CountInLog("[info] [] Loaded DataCollector library\\n"), 0);
}

TEST_F(HostSuppliedKeys, CommandsAnswerWithoutAPass) {
  const NotebookRun run = Run({L"serve-once"});
  EXPECT_EQ(run.host.exitStatus, 3u);
  EXPECT_THAT(run.host.errors, HasSubstr("no pass: the worker has ended"));
  EXPECT_THAT(run.host.output, HasSubstr(" 8  Has the data changed?          0           true\n"));
}

TEST_F(HostSuppliedKeys, PlatformItselfIsSupported) {
  // So the keys are the reason why the collector is not loaded.
  const NotebookRun run = Run({L"command", L"7"});
  EXPECT_EQ(run.host.output, "1\n");
}
