#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include "collection/fake_tool.h"
#include "collection/open_helper.h"
#include "support/log_capture.h"
#include "support/temp_folder.h"

using namespace TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ReportOperations : public testing::Test {
 protected:
  ReportOperations() { helper.collectionPath = folder.Path().c_str(); }

  bool IsLockFree() {
    return std::async(std::launch::async,
                      [this] {
                        const std::unique_lock attempt(helper.dataMutex, std::try_to_lock);
                        return attempt.owns_lock();
                      })
        .get();
  }

  const TempFolder folder;
  LogCapture log;
  FakeTool tool;
  OpenHelper helper;
};

using OnGetTop20PowerApps = ReportOperations;
using OnGetErrorAndWarnings = ReportOperations;
using GetErrorsAndWarnings = ReportOperations;

/// One of the two report operations, with its command line and its log text.
struct Operation {
  const char* commandLine;
  const wchar_t* literal;
  int literalChars;
  void (*run)(OpenHelper& helper);
};

const Operation kOperations[] = {
    {"run POWERCFG /SRUMUTIL /OUTPUT Powerlog.xml /XML",
     L"Error %d returned by System() call to Powerlog.xml", 50,
     [](OpenHelper& helper) { helper.OnGetTop20PowerApps(); }},
    {"run POWERCFG /ENERGY /OUTPUT EnergyReport.xml /DURATION 60 /XML",
     L"Error %d returned by System() call to EnergyReport.xml", 54,
     [](OpenHelper& helper) { helper.OnGetErrorAndWarnings(); }},
};

}  // namespace

TEST_F(OnGetTop20PowerApps, EntersTheDataFolderThenRunsTheToolOnce) {
  helper.collectionPath = L"C:\\somewhere";
  helper.OnGetTop20PowerApps();
  EXPECT_THAT(tool.Calls(), ElementsAre("enter C:\\somewhere",
                                        "run POWERCFG /SRUMUTIL /OUTPUT Powerlog.xml /XML"));
}

TEST_F(OnGetErrorAndWarnings, EntersTheDataFolderThenRunsTheToolOnce) {
  helper.collectionPath = L"C:\\somewhere";
  helper.OnGetErrorAndWarnings();
  EXPECT_THAT(tool.Calls(),
              ElementsAre("enter C:\\somewhere",
                          "run POWERCFG /ENERGY /OUTPUT EnergyReport.xml /DURATION 60 /XML"));
}

TEST_F(ReportOperations, RunTheToolEvenIfTheDirectoryCannotBeEntered) {
  tool.RefuseDirectories();
  for (const Operation& operation : kOperations) {
    operation.run(helper);
    EXPECT_EQ(tool.Calls().back(), operation.commandLine);
  }
  EXPECT_THAT(log.Records(), IsEmpty());
}

TEST_F(ReportOperations, HoldNoLockWhileTheToolRuns) {
  int runs = 0;
  tool.DuringRun([this, &runs] {
    EXPECT_TRUE(IsLockFree());
    ++runs;
  });
  for (const Operation& operation : kOperations) operation.run(helper);
  EXPECT_EQ(runs, 2);
}

TEST_F(ReportOperations, LogNothingOnSuccess) {
  for (const Operation& operation : kOperations) operation.run(helper);
  EXPECT_THAT(log.Records(), IsEmpty());
}

TEST_F(ReportOperations, LogAsManyCharactersAsTheExitStatus) {
  for (const Operation& operation : kOperations) {
    const std::wstring literal = operation.literal;
    const struct {
      int status;
      std::wstring text;
    } rows[] = {
        {1, L"E"},
        {5, L"Error"},
        {operation.literalChars - 1, literal.substr(0, literal.size() - 1)},
        {operation.literalChars, literal},
        {operation.literalChars + 1, literal},
        {9009, literal},
        {std::numeric_limits<int>::max(), literal},
    };
    for (const auto& row : rows) {
      log.Clear();
      tool.EndWith(row.status);
      operation.run(helper);
      EXPECT_THAT(log.Records(), ElementsAre(Error(row.text))) << row.status;
    }
  }
}

TEST_F(ReportOperations, DoNotUseTheLoggedTextAsAFormatString) {
  for (const Operation& operation : kOperations) {
    log.Clear();
    for (const int status : {7, 8, 9}) {
      tool.EndWith(status);
      operation.run(helper);
    }
    EXPECT_THAT(log.Records(),
                ElementsAre(Error(L"Error %"), Error(L"Error %d"), Error(L"Error %d ")));
  }
}

TEST_F(ReportOperations, ThrowOnANegativeStatusWithoutLogging) {
  helper.errorsAndWarningsJson = L"kept";
  for (const Operation& operation : kOperations) {
    for (const int status : {-1, std::numeric_limits<int>::min()}) {
      tool.EndWith(status);
      EXPECT_THROW(operation.run(helper), std::length_error) << status;
    }
  }
  EXPECT_THAT(log.Records(), IsEmpty());
  EXPECT_TRUE(IsLockFree());
  EXPECT_EQ(helper.errorsAndWarningsJson, L"kept");
}

TEST_F(OnGetTop20PowerApps, LeavesReportAndStoreOnFailure) {
  WriteWholeFile(folder.File(L"Powerlog.xml"), "<Report/>");
  WriteWholeFile(folder.File(L"Powerlog.json"), "[ ]");
  tool.EndWith(3);
  helper.OnGetTop20PowerApps();
  EXPECT_EQ(ReadWholeFile(folder.File(L"Powerlog.xml")), "<Report/>");
  EXPECT_EQ(ReadWholeFile(folder.File(L"Powerlog.json")), "[ ]");
}

TEST_F(OnGetTop20PowerApps, RewritesTheStoreWithoutAReport) {
  WriteWholeFile(folder.File(L"Powerlog.json"), "[ ]");
  helper.OnGetTop20PowerApps();
  EXPECT_EQ(ReadWholeFile(folder.File(L"Powerlog.json")), "[]");
}

TEST_F(OnGetErrorAndWarnings, ConvertsNothing) {
  WriteWholeFile(folder.File(L"Powerlog.xml"), "<Report/>");
  helper.OnGetErrorAndWarnings();
  EXPECT_TRUE(FileExists(folder.File(L"Powerlog.xml")));
  EXPECT_FALSE(FileExists(folder.File(L"Powerlog.json")));
}

TEST_F(OnGetTop20PowerApps, TakesTheLockAfterTheConversion) {
  std::future<void> run;
  {
    const std::lock_guard holder(helper.dataMutex);
    std::promise<void> toolRan;
    tool.DuringRun([&toolRan] { toolRan.set_value(); });
    run = std::async(std::launch::async, [this] { helper.OnGetTop20PowerApps(); });
    toolRan.get_future().wait();
    EXPECT_EQ(run.wait_for(std::chrono::milliseconds(200)), std::future_status::timeout);
    EXPECT_EQ(ReadWholeFile(folder.File(L"Powerlog.json")), "[]") << "the conversion is done";
  }
  run.get();
  EXPECT_TRUE(IsLockFree());
}

TEST_F(ReportOperations, TakeNoLockOnFailure) {
  tool.EndWith(1);
  const std::lock_guard holder(helper.dataMutex);
  for (const Operation& operation : kOperations) {
    auto run = std::async(std::launch::async, [&] { operation.run(helper); });
    EXPECT_EQ(run.wait_for(std::chrono::seconds(30)), std::future_status::ready);
  }
}

TEST_F(OnGetErrorAndWarnings, ClearsTheCacheUnderTheLock) {
  helper.errorsAndWarningsJson = L"[1]";
  std::future<void> run;
  {
    const std::lock_guard holder(helper.dataMutex);
    run = std::async(std::launch::async, [this] { helper.OnGetErrorAndWarnings(); });
    EXPECT_EQ(run.wait_for(std::chrono::milliseconds(200)), std::future_status::timeout);
    EXPECT_EQ(helper.errorsAndWarningsJson, L"[1]");
  }
  run.get();
  EXPECT_EQ(helper.errorsAndWarningsJson, L"");
  EXPECT_TRUE(IsLockFree());
}

TEST_F(OnGetErrorAndWarnings, KeepsTheCacheOnFailure) {
  helper.errorsAndWarningsJson = L"[1]";
  tool.EndWith(2);
  helper.OnGetErrorAndWarnings();
  EXPECT_EQ(helper.errorsAndWarningsJson, L"[1]");
}

TEST_F(ReportOperations, DoNotRetryTheTool) {
  tool.EndWith(2);
  for (const Operation& operation : kOperations) operation.run(helper);
  EXPECT_THAT(tool.Calls(), testing::SizeIs(4));
}

TEST_F(GetErrorsAndWarnings, ReturnsAnEmptyListWithAndWithoutAReport) {
  std::wstring result = L"before";
  helper.GetErrorsAndWarnings(result);
  EXPECT_EQ(result, L"[]");

  WriteWholeFile(folder.File(L"EnergyReport.xml"), "<EnergyProblems><Problem/></EnergyProblems>");
  result = L"before";
  helper.GetErrorsAndWarnings(result);
  EXPECT_EQ(result, L"[]");
  EXPECT_TRUE(FileExists(folder.File(L"EnergyReport.xml")));
}

TEST_F(GetErrorsAndWarnings, ReturnsAnEmptyListAfterAReportRun) {
  helper.OnGetErrorAndWarnings();
  std::wstring result;
  helper.GetErrorsAndWarnings(result);
  EXPECT_EQ(result, L"[]");
}

TEST_F(GetErrorsAndWarnings, RunsNoTool) {
  std::wstring result;
  helper.GetErrorsAndWarnings(result);
  EXPECT_THAT(tool.Calls(), IsEmpty());
}

TEST_F(GetErrorsAndWarnings, ReturnsTheCacheUnchanged) {
  helper.errorsAndWarningsJson = L"no JSON, \x65E5";
  std::wstring result = L"before";
  helper.GetErrorsAndWarnings(result);
  EXPECT_EQ(result, L"no JSON, \x65E5");
  EXPECT_EQ(helper.errorsAndWarningsJson, L"no JSON, \x65E5") << "reading does not clear it";
}

TEST_F(GetErrorsAndWarnings, TakesNoLock) {
  const std::lock_guard holder(helper.dataMutex);
  std::wstring result;
  auto answer = std::async(std::launch::async, [&] { helper.GetErrorsAndWarnings(result); });
  ASSERT_EQ(answer.wait_for(std::chrono::seconds(30)), std::future_status::ready);
  EXPECT_EQ(result, L"[]");
}
