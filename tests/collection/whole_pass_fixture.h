#pragma once

#include <gtest/gtest.h>

#include "collection/fake_tool.h"
#include "collection/ledger_fixture.h"
#include "collection/notebook_folder.h"
#include "collection/unprotected_samples.h"

namespace TestSupport {

/// Passes on 8 May 2024, 14:30, with a tool that writes a report. Samples are not encrypted.
class WholePassFixture : public testing::Test {
 protected:
  WholePassFixture() { FakeClock::Set("2024-05-08 14:30:00"); }

  /// A pass of a process over its data folder: the ledger, then the report.
  void RunPass(TestHelper& helper, const NotebookFolder& data) {
    tool_.DuringRun([&data] { WriteWholeFile(data.ReportPath(), ReportOfApplications()); });
    testing::internal::CaptureStdout();
    helper.CalculateDailyPowerConsumption();
    helper.OnGetTop20PowerApps();
    testing::internal::GetCapturedStdout();
  }

  LogCapture log;

 private:
  const FakeClock clock_;
  const UnprotectedSamples unprotected_;
  FakeTool tool_;
};

}  // namespace TestSupport
