// The report run as a step of the worker's pass.

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "catalogue/fake_packages.h"
#include "collection/fake_tool.h"
#include "collection/open_helper.h"
#include "import_patch.h"
#include "support/log_capture.h"
#include "support/temp_folder.h"

using namespace TestSupport;
using Standin::ImportPatch;
using testing::Contains;
using testing::ElementsAre;

namespace {

OpenHelper* current = nullptr;

/// Ends the worker at its first sleep of a day.
void WINAPI FakeSleep(DWORD milliseconds) {
  if (milliseconds == 86400000) current->running = false;
}

/// A helper whose collector counts as started, for one pass without samples.
class ProcessingCallback : public testing::Test {
 protected:
  ProcessingCallback() {
    helper.PlatformSupportState = 1;
    helper.collectionStarted = true;
    helper.collectionPath = folder.Path().c_str();
    helper.running = true;
    current = &helper;
  }

  const TempFolder folder;
  LogCapture log;
  FakePackages packages;
  FakeTool tool;
  ImportPatch patchedSleep{"Sleep", &FakeSleep};
  OpenHelper helper;
};

using StartProcessingDeathTest = ProcessingCallback;

}  // namespace

TEST_F(ProcessingCallback, RunsTheReportWithoutSamples) {
  helper.ProcessingCallback();
  EXPECT_THAT(tool.Calls(), testing::SizeIs(2));
  EXPECT_EQ(tool.Calls().back(), "run POWERCFG /SRUMUTIL /OUTPUT Powerlog.xml /XML");
}

TEST_F(ProcessingCallback, RunsTheReportAfterTheLedgerAndBeforeSettingDataAvailable) {
  int runs = 0;
  tool.DuringRun([this, &runs] {
    EXPECT_TRUE(FileExists(folder.File(L"PowerConsumption.json")));
    EXPECT_FALSE(helper.IsDataAvailable());
    ++runs;
  });
  helper.ProcessingCallback();
  EXPECT_EQ(runs, 1);
  EXPECT_TRUE(helper.IsDataAvailable());
}

TEST_F(ProcessingCallback, SetsDataAvailableWhenTheReportFails) {
  tool.EndWith(5);
  helper.ProcessingCallback();
  EXPECT_THAT(log.Records(), Contains(Error(L"Error")));
  EXPECT_TRUE(helper.IsDataAvailable());
}

TEST_F(ProcessingCallback, NeverRunsTheEnergyProblemsReport) {
  helper.errorsAndWarningsJson = L"kept";
  helper.ProcessingCallback();
  EXPECT_THAT(tool.Calls(), testing::Not(Contains(testing::HasSubstr("/ENERGY"))));
  EXPECT_EQ(helper.errorsAndWarningsJson, L"kept");
}

TEST_F(ProcessingCallback, ThrowsOnANegativeStatusBeforeSettingDataAvailable) {
  tool.EndWith(-1);
  EXPECT_THROW(helper.ProcessingCallback(), std::length_error);
  EXPECT_FALSE(helper.IsDataAvailable());
}

TEST_F(StartProcessingDeathTest, EndsTheProcessOnANegativeStatus) {
  tool.EndWith(-1);
  EXPECT_EXIT(
      {
        helper.StartProcessing();
        helper.worker->join();
        ExitProcess(0);
      },
      testing::ExitedWithCode(3), "");
}
