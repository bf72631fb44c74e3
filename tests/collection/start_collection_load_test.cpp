// StartCollection up to the collector's OnLoad: platform, data folder, checks of the file, loading.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "collection/collector_fixture.h"

using namespace TestSupport;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

using StartCollection = CollectorFixture;

}  // namespace

TEST_F(StartCollection, LoadsAndLogsNothingOnAnUnsupportedPlatform) {
  for (const int platform : {0, -1}) {
    helper->PlatformSupportState = platform;
    EXPECT_FALSE(helper->StartCollection());
    EXPECT_FALSE(helper->collectionStarted);
  }
  EXPECT_THAT(library.loaded, IsEmpty());
  EXPECT_THAT(log.Records(), IsEmpty());
}

TEST_F(StartCollection, LoadsATrustedCollectorByItsBareNameAndStartsIt) {
  EXPECT_TRUE(StartTrusted());
  EXPECT_THAT(library.loaded, ElementsAre(L"TelemetryZQXWrapper.dll"));
  EXPECT_THAT(library.script.calls, ElementsAre("create", "load", "callback", "start"));
  EXPECT_THAT(library.script.kinds, ElementsAre(0));
  EXPECT_THAT(CollectorRecords(), ElementsAre(Info(L"Loaded DataCollector library\n"),
                                              Info(L"DataCollector StartCollecting() success\n ")));
  EXPECT_TRUE(helper->dataAvailable);
  EXPECT_EQ(helper->PlatformSupportState, 1);
  EXPECT_NE(helper->collector.get(), nullptr);
  EXPECT_EQ(helper->collectorModule.get(), FakeCollectorLibrary::Module());
}

TEST_F(StartCollection, CreatesTheDataFolderBeforeTheChecksAndLogsEachStepInOrder) {
  EXPECT_TRUE(StartTrusted());
  const std::vector<std::string> lines = record.Lines();
  ASSERT_GT(lines.size(), 2U);
  EXPECT_EQ(lines[0], "create data folder");
  EXPECT_THAT(lines[1], StartsWith("log info: Security - "));
  EXPECT_THAT(record.LinesOf({"create", "library", "collector", "log info: Loaded",
                              "log info: DataCollector"}),
              ElementsAre("create data folder", "library load", "collector create",
                          "log info: Loaded DataCollector library\n", "collector load",
                          "collector callback", "collector start",
                          "log info: DataCollector StartCollecting() success\n "));
}

TEST_F(StartCollection, CreatesTheDataFolderEvenForAnUntrustedLibrary) {
  const ProtectedFolder folder(L"unsigned.dll");
  helper->hostDirectory = folder.Path();
  EXPECT_FALSE(helper->StartCollection());
  EXPECT_TRUE(FileExists(dataFolder));
}

TEST_F(StartCollection, CreatesTheParentsOfTheDataFolder) {
  StartTrusted();
  EXPECT_TRUE(FileExists(dataFolder));
}

TEST_F(StartCollection, SucceedsWhenTheDataFolderCannotBeCreated) {
  WriteWholeFile(data.File(L"a"), "a file where the parent folder would be");
  EXPECT_TRUE(StartTrusted());
  EXPECT_FALSE(FileExists(dataFolder));
}

TEST_F(StartCollection, ChecksTheCopyInTheHostDirectory) {
  const ProtectedFolder folder(L"unsigned.dll");
  helper->hostDirectory = folder.Path();
  EXPECT_FALSE(helper->StartCollection());
  EXPECT_THAT(log.Records(), Contains(Info(L"Security - GetSecurityCatalogInfo - File = " +
                                           folder.Path() + L"\\TelemetryZQXWrapper.dll")));
}

TEST_F(StartCollection, DoesNotLoadALibraryThatFailsTheSignatureCheck) {
  const ProtectedFolder folder(L"unsigned.dll");
  helper->hostDirectory = folder.Path();
  EXPECT_FALSE(helper->StartCollection());
  EXPECT_THAT(library.loaded, IsEmpty());
  EXPECT_THAT(CollectorRecords(), ElementsAre(Warning(L"Unable to load DataCollector library.")));
}

TEST_F(StartCollection, DoesNotLoadATrustedLibraryFromADisallowedLocation) {
  const TempFolder open;
  CopyFileW((ProgramFolder() + L"\\collection-samples\\signed.dll").c_str(),
            open.File(L"TelemetryZQXWrapper.dll").c_str(), FALSE);
  helper->hostDirectory = open.Path();
  EXPECT_FALSE(helper->StartCollection());
  EXPECT_THAT(log.Records(),
              Contains(Info(L"Security - IsFileTrusted - trusted by windows = yes, trusted by "
                            L"Meridian = yes")));
  EXPECT_THAT(library.loaded, IsEmpty());
  EXPECT_THAT(CollectorRecords(), ElementsAre(Warning(L"Unable to load DataCollector library.")));
}

TEST_F(StartCollection, ChecksTheLocationOnlyAfterATrustedSignature) {
  const ProtectedFolder folder(L"unsigned.dll");
  helper->hostDirectory = folder.Path();
  EXPECT_FALSE(helper->StartCollection());
  for (const LogRecord& line : log.Records()) {
    EXPECT_EQ(line.text.find(L"GetFullPathName"), std::wstring::npos);
  }
}

TEST_F(StartCollection, ChecksTheBareFileNameWhenTheHostDirectoryIsEmpty) {
  helper->hostDirectory.clear();
  EXPECT_FALSE(helper->StartCollection());
  EXPECT_THAT(log.Records(), Contains(Info(L"Security - GetSecurityCatalogInfo - File = "
                                           L"TelemetryZQXWrapper.dll")));
}

TEST_F(StartCollection, WarnsAndFreesNothingWhenTheLoadFails) {
  library.loads = false;
  EXPECT_FALSE(StartTrusted());
  EXPECT_THAT(CollectorRecords(), ElementsAre(Warning(L"Unable to load DataCollector library.")));
  EXPECT_EQ(library.freed, 0);
}

TEST_F(StartCollection, UnloadsALibraryWithoutTheExport) {
  library.exports = false;
  EXPECT_FALSE(StartTrusted());
  EXPECT_THAT(CollectorRecords(),
              ElementsAre(Error(L"Unable to find methods in DataCollector.\n")));
  ExpectUnloaded();
}

TEST_F(StartCollection, TreatsANullCollectorAsAFailedOnLoad) {
  library.createsNull = true;
  EXPECT_FALSE(StartTrusted());
  EXPECT_THAT(CollectorRecords(), ElementsAre(Info(L"Loaded DataCollector library\n"),
                                              Error(L"DataCollector OnLoad() failed.\n")));
  ExpectUnloaded();
}

TEST_F(StartCollection, DestroysTheCollectorBeforeFreeingTheLibraryWhenOnLoadFails) {
  library.script.loads = false;
  EXPECT_FALSE(StartTrusted());
  EXPECT_THAT(library.script.calls, ElementsAre("create", "load", "destroy", "free"));
  EXPECT_THAT(CollectorRecords(), ElementsAre(Info(L"Loaded DataCollector library\n"),
                                              Error(L"DataCollector OnLoad() failed.\n")));
  ExpectUnloaded();
}
