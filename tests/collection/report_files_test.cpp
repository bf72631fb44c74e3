// The report operations with a real tool, and the files that they leave in the data folder.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "collection/open_helper.h"
#include "reports/real_tool.h"
#include "support/log_capture.h"
#include "support/temp_folder.h"

using namespace TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

class RealToolFixture : public testing::Test {
 protected:
  RealToolFixture() {
    tool.Set(L"DAYS", L"1");
    helper.collectionPath = tool.Folder().Path().c_str();
  }

  std::wstring File(const wchar_t* name) const { return tool.Folder().File(name); }

  RealTool tool;
  LogCapture log;
  OpenHelper helper;
};

using OnGetTop20PowerAppsWithRealTool = RealToolFixture;
using OnGetErrorAndWarningsWithRealTool = RealToolFixture;
using ReportOperationsWithRealTool = RealToolFixture;

}  // namespace

TEST_F(OnGetErrorAndWarningsWithRealTool, KeepsTheReportAndOverwritesItAtTheNextRun) {
  helper.errorsAndWarningsJson = L"[1]";
  WriteWholeFile(File(L"EnergyReport.xml"), "from the previous run");
  helper.OnGetErrorAndWarnings();
  EXPECT_THAT(ReadWholeFile(File(L"EnergyReport.xml")), StartsWith("<?xml"));
  EXPECT_EQ(helper.errorsAndWarningsJson, L"");

  std::wstring result;
  helper.GetErrorsAndWarnings(result);
  EXPECT_EQ(result, L"[]");
  EXPECT_TRUE(FileExists(File(L"EnergyReport.xml")));
}

TEST_F(OnGetTop20PowerAppsWithRealTool, MergesTheReportIntoTheStoreAndDeletesIt) {
  helper.OnGetTop20PowerApps();
  EXPECT_FALSE(FileExists(File(L"Powerlog.xml")));
  EXPECT_THAT(ReadWholeFile(File(L"Powerlog.json")), StartsWith("[{\"Name\":"));
}

TEST_F(OnGetTop20PowerAppsWithRealTool, RewritesTheStoreWhenTheToolWritesNoReport) {
  WriteWholeFile(File(L"Powerlog.json"), "no JSON");
  tool.Set(L"OUTPUT", L"nothing");
  helper.OnGetTop20PowerApps();
  EXPECT_EQ(ReadWholeFile(File(L"Powerlog.json")), "[]");
}

TEST_F(OnGetTop20PowerAppsWithRealTool, DeletesABrokenReportAndStoresNothing) {
  tool.Set(L"OUTPUT", L"broken");
  helper.OnGetTop20PowerApps();
  EXPECT_FALSE(FileExists(File(L"Powerlog.xml")));
  EXPECT_EQ(ReadWholeFile(File(L"Powerlog.json")), "[]");
}

TEST_F(ReportOperationsWithRealTool, LogTheStatusOfAFailingTool) {
  tool.Set(L"STATUS", L"5");
  helper.OnGetTop20PowerApps();
  helper.OnGetErrorAndWarnings();
  EXPECT_THAT(log.Records(), ElementsAre(Error(L"Error"), Error(L"Error")));
  EXPECT_FALSE(FileExists(File(L"Powerlog.xml")));
  EXPECT_FALSE(FileExists(File(L"EnergyReport.xml")));
}

TEST_F(ReportOperationsWithRealTool, LogNothingOnSuccess) {
  helper.OnGetTop20PowerApps();
  helper.OnGetErrorAndWarnings();
  EXPECT_THAT(log.Records(), IsEmpty());
}
