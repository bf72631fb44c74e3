#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "collection/fake_collector_library.h"
#include "collection/open_helper.h"
#include "import_patch.h"
#include "service/wattleaf_service.h"
#include "support/log_capture.h"
#include "support/temp_folder.h"

using namespace TestSupport;
using Standin::ImportPatch;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using Zq::Gantry::Server::Services::Wattleaf::WattleafHelper;
using Zq::Gantry::Server::Services::Wattleaf::WattleafService;

namespace {

class CollectorHost : public testing::Test {
 protected:
  CollectorHost() {
    current = this;
    library.script.record = &record;
    helper = std::make_unique<OpenHelper>();
    helper->PlatformSupportState = 1;
    dataFolder = data.File(L"a\\b");
    helper->collectionPath = dataFolder.c_str();
  }
  ~CollectorHost() override { helper.reset(); }

  /// Starts with a collector file that passes both checks.
  bool StartTrusted() {
    const ProtectedFolder folder(L"signed.dll");
    helper->hostDirectory = folder.Path();
    return helper->StartCollection();
  }

  /// The log without the lines of the two checks.
  std::vector<LogRecord> OwnRecords() const {
    std::vector<LogRecord> own;
    for (const LogRecord& line : log.Records()) {
      if (line.text.find(L"DataCollector") != std::wstring::npos ||
          line.text.find(L"StartCollection()") != std::wstring::npos) {
        own.push_back(line);
      }
    }
    return own;
  }

  void ExpectUnloaded() {
    EXPECT_EQ(helper->collector.get(), nullptr);
    EXPECT_FALSE(helper->collectorModule);
    EXPECT_EQ(library.freed, 1);
  }

  /// Throws `exception` in one call of the collector.
  template <typename Exception>
  void ThrowIn(const std::string& call, Exception exception) {
    library.script.onCall = [call, exception](const std::string& entered) {
      if (entered == call) throw exception;
    };
  }

  TempFolder data;
  std::wstring dataFolder;
  CallRecord record;
  LogCapture log{record};
  FakeCollectorLibrary library;
  std::unique_ptr<OpenHelper> helper;

 private:
  static BOOL WINAPI MakeDirectory(const wchar_t* path, SECURITY_ATTRIBUTES* security) {
    if (current->dataFolder == path) current->record.Add("make data folder");
    return current->patchedMakeDirectory
        .Original<BOOL WINAPI(const wchar_t*, SECURITY_ATTRIBUTES*)>()(path, security);
  }

  static inline CollectorHost* current = nullptr;
  ImportPatch patchedMakeDirectory{"CreateDirectoryW", &MakeDirectory};
};

}  // namespace

TEST_F(CollectorHost, ADecidedStateOtherThanSupportedLoadsAndLogsNothing) {
  for (const int state : {0, -1}) {
    helper->PlatformSupportState = state;
    EXPECT_FALSE(helper->StartCollection());
    EXPECT_FALSE(helper->collectionStarted);
  }
  EXPECT_THAT(library.loaded, IsEmpty());
  EXPECT_THAT(log.Records(), IsEmpty());
}

TEST_F(CollectorHost, ATrustedCollectorIsLoadedByItsBareNameAndStarted) {
  EXPECT_TRUE(StartTrusted());
  EXPECT_THAT(library.loaded, ElementsAre(L"TelemetryZQXWrapper.dll"));
  EXPECT_THAT(library.script.calls, ElementsAre("create", "load", "callback", "start"));
  EXPECT_THAT(library.script.kinds, ElementsAre(0));
  EXPECT_THAT(OwnRecords(), ElementsAre(Info(L"Loaded DataCollector library\n"),
                                        Info(L"DataCollector StartCollecting() success\n ")));
  EXPECT_TRUE(helper->dataAvailable);
  EXPECT_EQ(helper->PlatformSupportState, 1);
  EXPECT_NE(helper->collector.get(), nullptr);
  EXPECT_EQ(helper->collectorModule.get(), FakeCollectorLibrary::Module());
}

TEST_F(CollectorHost, TheDataFolderIsMadeBeforeTheChecksAndEachStepIsLoggedInItsPlace) {
  EXPECT_TRUE(StartTrusted());
  const std::vector<std::string> lines = record.Lines();
  ASSERT_GT(lines.size(), 2U);
  EXPECT_EQ(lines[0], "make data folder");
  EXPECT_THAT(lines[1], StartsWith("log info: Security - "));
  EXPECT_THAT(record.LinesOf(
                  {"make", "library", "collector", "log info: Loaded", "log info: DataCollector"}),
              ElementsAre("make data folder", "library load", "collector create",
                          "log info: Loaded DataCollector library\n", "collector load",
                          "collector callback", "collector start",
                          "log info: DataCollector StartCollecting() success\n "));
}

TEST_F(CollectorHost, TheDataFolderIsMadeThoughTheLibraryIsNotTrusted) {
  const ProtectedFolder folder(L"unsigned.dll");
  helper->hostDirectory = folder.Path();
  EXPECT_FALSE(helper->StartCollection());
  EXPECT_TRUE(FileExists(dataFolder));
}

TEST_F(CollectorHost, TheDataFolderIsMadeWithAllAboveIt) {
  StartTrusted();
  EXPECT_TRUE(FileExists(dataFolder));
}

TEST_F(CollectorHost, ADataFolderThatCannotBeMadeIsNoHindrance) {
  WriteWholeFile(data.File(L"a"), "a file in its way");
  EXPECT_TRUE(StartTrusted());
  EXPECT_FALSE(FileExists(dataFolder));
}

TEST_F(CollectorHost, TheCopyInTheHostsDirectoryIsChecked) {
  const ProtectedFolder folder(L"unsigned.dll");
  helper->hostDirectory = folder.Path();
  EXPECT_FALSE(helper->StartCollection());
  EXPECT_THAT(log.Records(), Contains(Info(L"Security - GetSecurityCatalogInfo - File = " +
                                           folder.Path() + L"\\TelemetryZQXWrapper.dll")));
}

TEST_F(CollectorHost, ALibraryThatFailsTheSignatureCheckIsNotLoaded) {
  const ProtectedFolder folder(L"unsigned.dll");
  helper->hostDirectory = folder.Path();
  EXPECT_FALSE(helper->StartCollection());
  EXPECT_THAT(library.loaded, IsEmpty());
  EXPECT_THAT(OwnRecords(), ElementsAre(Warning(L"Unable to load DataCollector library.")));
}

TEST_F(CollectorHost, ATrustedLibraryInAPlaceThatIsNotAllowedIsNotLoaded) {
  const TempFolder open;
  CopyFileW((ProgramFolder() + L"\\collection-samples\\signed.dll").c_str(),
            open.File(L"TelemetryZQXWrapper.dll").c_str(), FALSE);
  helper->hostDirectory = open.Path();
  EXPECT_FALSE(helper->StartCollection());
  EXPECT_THAT(log.Records(),
              Contains(Info(L"Security - IsFileTrusted - trusted by windows = yes, trusted by "
                            L"Meridian = yes")));
  EXPECT_THAT(library.loaded, IsEmpty());
  EXPECT_THAT(OwnRecords(), ElementsAre(Warning(L"Unable to load DataCollector library.")));
}

TEST_F(CollectorHost, TheLocationIsAskedOnlyBehindATrustedSignature) {
  const ProtectedFolder folder(L"unsigned.dll");
  helper->hostDirectory = folder.Path();
  EXPECT_FALSE(helper->StartCollection());
  for (const LogRecord& line : log.Records()) {
    EXPECT_EQ(line.text.find(L"GetFullPathName"), std::wstring::npos);
  }
}

TEST_F(CollectorHost, AnEmptyHostDirectoryChecksTheBareFileName) {
  helper->hostDirectory.clear();
  EXPECT_FALSE(helper->StartCollection());
  EXPECT_THAT(log.Records(), Contains(Info(L"Security - GetSecurityCatalogInfo - File = "
                                           L"TelemetryZQXWrapper.dll")));
}

TEST_F(CollectorHost, AFailedLoadWarnsAndFreesNothing) {
  library.loads = false;
  EXPECT_FALSE(StartTrusted());
  EXPECT_THAT(OwnRecords(), ElementsAre(Warning(L"Unable to load DataCollector library.")));
  EXPECT_EQ(library.freed, 0);
}

TEST_F(CollectorHost, AMissingExportUnloads) {
  library.exports = false;
  EXPECT_FALSE(StartTrusted());
  EXPECT_THAT(OwnRecords(), ElementsAre(Error(L"Unable to find methods in DataCollector.\n")));
  ExpectUnloaded();
}

TEST_F(CollectorHost, ALibraryThatMakesNoObjectCountsAsOneThatCannotLoad) {
  library.makesNull = true;
  EXPECT_FALSE(StartTrusted());
  EXPECT_THAT(OwnRecords(), ElementsAre(Info(L"Loaded DataCollector library\n"),
                                        Error(L"DataCollector OnLoad() failed.\n")));
  ExpectUnloaded();
}

TEST_F(CollectorHost, OnLoadFalseDestroysTheObjectBeforeTheLibraryIsFreed) {
  library.script.loads = false;
  EXPECT_FALSE(StartTrusted());
  EXPECT_THAT(library.script.calls, ElementsAre("create", "load", "destroy", "free"));
  EXPECT_THAT(OwnRecords(), ElementsAre(Info(L"Loaded DataCollector library\n"),
                                        Error(L"DataCollector OnLoad() failed.\n")));
  ExpectUnloaded();
}

TEST_F(CollectorHost, AStatusMapWithoutKeyZeroUnloads) {
  library.script.status = {{1, 1}};
  EXPECT_FALSE(StartTrusted());
  EXPECT_THAT(OwnRecords(), ElementsAre(Info(L"Loaded DataCollector library\n"),
                                        Error(L"DataCollector StartCollecting() failed.\n")));
  ExpectUnloaded();
}

TEST_F(CollectorHost, AnUnknownStatusUnloadsWithoutAMessage) {
  library.script.status = {{0, 7}};
  EXPECT_FALSE(StartTrusted());
  EXPECT_THAT(OwnRecords(), ElementsAre(Info(L"Loaded DataCollector library\n")));
  EXPECT_EQ(helper->PlatformSupportState, 1);
  EXPECT_FALSE(helper->dataAvailable);
  ExpectUnloaded();
}

TEST_F(CollectorHost, StatusMinusOneOverridesTheProbesAndKeepsTheLibrary) {
  library.script.status = {{0, -1}};
  EXPECT_FALSE(StartTrusted());
  EXPECT_EQ(helper->IsPlatformSupported(), -1);
  EXPECT_THAT(
      OwnRecords(),
      ElementsAre(Info(L"Loaded DataCollector library\n"),
                  Error(L"DataCollector StartCollecting() failed. Firmware update required\n")));
  EXPECT_NE(helper->collector.get(), nullptr);
  EXPECT_EQ(library.freed, 0);
  EXPECT_FALSE(helper->dataAvailable);
}

TEST_F(CollectorHost, CommandSevenTellsTheCollectorsVerdict) {
  // The service asks the one helper.
  auto& one = WattleafHelper::Instance();
  const ProtectedFolder folder(L"signed.dll");
  one.*(&OpenHelper::PlatformSupportState) = 1;
  one.*(&OpenHelper::collectionStarted) = false;
  one.*(&OpenHelper::hostDirectory) = folder.Path();
  one.*(&OpenHelper::collectionPath) = dataFolder.c_str();
  library.script.status = {{0, -1}};
  EXPECT_FALSE(one.StartCollection());

  WattleafService service;
  wchar_t input[] = L"";
  wchar_t* output = nullptr;
  EXPECT_EQ(service.ExecuteCommand(nullptr, 7, input, &output, {}, nullptr), 0);
  EXPECT_STREQ(output, L"-1");
  service.FreeResult(output);
  // The fake library is gone before the one helper ends.
  (one.*(&OpenHelper::collector)).reset();
  (one.*(&OpenHelper::collectorModule)).reset();
}

TEST_F(CollectorHost, StatusZeroOverridesTheProbesAndKeepsTheLibrary) {
  library.script.status = {{0, 0}};
  EXPECT_FALSE(StartTrusted());
  EXPECT_EQ(helper->IsPlatformSupported(), 0);
  EXPECT_THAT(
      OwnRecords(),
      ElementsAre(Info(L"Loaded DataCollector library\n"),
                  Error(L"DataCollector StartCollecting() failed. Device not supported.\n")));
  EXPECT_NE(helper->collector.get(), nullptr);
  EXPECT_EQ(library.freed, 0);
}

TEST_F(CollectorHost, ASecondStartAfterAFailedOneIsASuccessWithoutWork) {
  library.script.loads = false;
  EXPECT_FALSE(StartTrusted());
  const std::size_t lines = log.Records().size();
  EXPECT_TRUE(helper->StartCollection());
  EXPECT_EQ(library.loaded.size(), 1U);
  EXPECT_EQ(log.Records().size(), lines);
}

TEST_F(CollectorHost, ASecondStartAfterARefusedOrFailedLoadIsASuccessWithoutWork) {
  {
    const ProtectedFolder folder(L"unsigned.dll");
    helper->hostDirectory = folder.Path();
    EXPECT_FALSE(helper->StartCollection());
    EXPECT_TRUE(helper->StartCollection());
    EXPECT_THAT(library.loaded, IsEmpty());
  }
  helper->collectionStarted = false;
  library.loads = false;
  EXPECT_FALSE(StartTrusted());
  EXPECT_TRUE(helper->StartCollection());
  EXPECT_EQ(library.loaded.size(), 1U);
}

TEST_F(CollectorHost, AStartWhileTheFirstOneLoadsIsASuccessWithoutWork) {
  library.script.onCall = [this](const std::string& call) {
    if (call == "create") {
      EXPECT_TRUE(helper->StartCollection());
    }
  };
  EXPECT_TRUE(StartTrusted());
  EXPECT_EQ(library.loaded.size(), 1U);
}

TEST_F(CollectorHost, OnlyAStartedCollectorMakesDataAvailable) {
  for (const std::map<int, int>& status :
       std::vector<std::map<int, int>>{{{0, 0}}, {{0, -1}}, {{0, 2}}, {{0, 7}}, {}, {{1, 1}}}) {
    SCOPED_TRACE(testing::PrintToString(status));
    helper->PlatformSupportState = 1;
    helper->collectionStarted = false;
    library.script.status = status;
    EXPECT_FALSE(StartTrusted());
    EXPECT_FALSE(helper->IsDataAvailable());
  }
  helper->PlatformSupportState = 1;
  helper->collectionStarted = false;
  library.script.status = {{0, 1}};
  EXPECT_TRUE(StartTrusted());
  EXPECT_TRUE(helper->IsDataAvailable());
}

TEST_F(CollectorHost, AnExceptionOfAnyCallIsLoggedAndUnloads) {
  int freed = 0;
  for (const char* call : {"create", "load", "callback", "start"}) {
    SCOPED_TRACE(call);
    ThrowIn(call, std::runtime_error("no sensor"));
    EXPECT_FALSE(StartTrusted());
    EXPECT_EQ(log.Records().back(), Error(L"Exception in  StartCollection() - no sensor.\n"));
    EXPECT_EQ(library.freed, ++freed);
    helper->collectionStarted = false;
    ThrowIn(call, 5);
    EXPECT_FALSE(StartTrusted());
    EXPECT_EQ(log.Records().back(), Error(L"Exception in  StartCollection() - \n"));
    EXPECT_EQ(library.freed, ++freed);
    helper->collectionStarted = false;
  }
  EXPECT_EQ(helper->collector.get(), nullptr);
}

TEST_F(CollectorHost, TheTextOfAnExceptionIsNoFormat) {
  ThrowIn("start", std::runtime_error("100% of %s, %d and %n"));
  EXPECT_FALSE(StartTrusted());
  EXPECT_EQ(log.Records().back(),
            Error(L"Exception in  StartCollection() - 100% of %s, %d and %n.\n"));
}

TEST_F(CollectorHost, AStandardExceptionIsLoggedWithItsTextAndUnloads) {
  ThrowIn("start", std::runtime_error("no sensor"));
  EXPECT_FALSE(StartTrusted());
  EXPECT_THAT(OwnRecords(), ElementsAre(Info(L"Loaded DataCollector library\n"),
                                        Error(L"Exception in  StartCollection() - no sensor.\n")));
  ExpectUnloaded();
}

TEST_F(CollectorHost, AnyOtherExceptionIsLoggedWithoutATextAndUnloads) {
  ThrowIn("start", 5);
  EXPECT_FALSE(StartTrusted());
  EXPECT_THAT(OwnRecords(), ElementsAre(Info(L"Loaded DataCollector library\n"),
                                        Error(L"Exception in  StartCollection() - \n")));
  ExpectUnloaded();
}

namespace {

/// An exception that writes down the end of its last copy.
class WitnessedFailure : public std::runtime_error {
 public:
  explicit WitnessedFailure(std::vector<std::string>& calls)
      : std::runtime_error("witnessed"),
        end_(&calls, [](std::vector<std::string>* log) { log->push_back("exception gone"); }) {}

 private:
  std::shared_ptr<std::vector<std::string>> end_;
};

}  // namespace

TEST_F(CollectorHost, TheExceptionObjectIsGoneBeforeTheLibraryIsFreed) {
  library.script.onCall = [this](const std::string& call) {
    if (call == "start") throw WitnessedFailure(library.script.calls);
  };
  EXPECT_FALSE(StartTrusted());
  EXPECT_THAT(library.script.calls, ElementsAre("create", "load", "callback", "start",
                                                "exception gone", "destroy", "free"));
}

TEST_F(CollectorHost, AnExceptionOfTheCollectorsDestructorIsDropped) {
  library.script.loads = false;
  ThrowIn("destroy", std::runtime_error("late"));
  EXPECT_FALSE(StartTrusted());
  ExpectUnloaded();
}

TEST_F(CollectorHost, AnotherExceptionOfTheCollectorsDestructorIsDroppedToo) {
  library.script.loads = false;
  ThrowIn("destroy", 5);
  EXPECT_FALSE(StartTrusted());
  ExpectUnloaded();
}

TEST_F(CollectorHost, StopWithoutCollectorDoesNothing) {
  helper->StopCollection();
  EXPECT_THAT(library.script.calls, IsEmpty());
  EXPECT_THAT(log.Records(), IsEmpty());
}

TEST_F(CollectorHost, StopAsksForTheOneKindAndLeavesTheLibraryLoaded) {
  StartTrusted();
  library.script.kinds.clear();
  helper->StopCollection();
  EXPECT_THAT(library.script.calls, Contains("stop"));
  EXPECT_THAT(library.script.kinds, ElementsAre(0));
  EXPECT_NE(helper->collector.get(), nullptr);
  EXPECT_EQ(library.freed, 0);
}

TEST_F(CollectorHost, TheHelpersEndStopsDestroysAndFreesInThisOrder) {
  StartTrusted();
  library.script.calls.clear();
  helper.reset();
  EXPECT_THAT(library.script.calls, ElementsAre("stop", "destroy", "free"));
}

TEST_F(CollectorHost, TheHelpersEndDropsAnExceptionOfTheCollector) {
  for (const char* call : {"stop", "destroy"}) {
    for (const bool isStandard : {true, false}) {
      SCOPED_TRACE(testing::Message() << call << (isStandard ? " standard" : " other"));
      helper = std::make_unique<OpenHelper>();
      helper->PlatformSupportState = 1;
      helper->collectionPath = dataFolder.c_str();
      library.script.onCall = nullptr;
      StartTrusted();
      library.script.calls.clear();
      isStandard ? ThrowIn(call, std::runtime_error("late")) : ThrowIn(call, 5);
      helper.reset();
      EXPECT_THAT(library.script.calls, ElementsAre("stop", "destroy", "free"));
    }
  }
}

TEST_F(CollectorHost, TheHelpersEndStopsARefusedCollectorToo) {
  library.script.status = {{0, 0}};
  StartTrusted();
  library.script.calls.clear();
  helper.reset();
  EXPECT_THAT(library.script.calls, ElementsAre("stop", "destroy", "free"));
}

TEST_F(CollectorHost, TheCallbackWritesDataChangedOnlyForAPositiveCount) {
  StartTrusted();
  ASSERT_NE(library.script.callback, nullptr);
  auto& changed = OpenHelper::Instance().*(&OpenHelper::dataChanged);
  ASSERT_TRUE(changed);
  changed = false;
  library.script.callback(nullptr, 0);
  EXPECT_FALSE(changed);
  library.script.callback(nullptr, -1);
  EXPECT_FALSE(changed);
  library.script.callback(nullptr, 1);
  EXPECT_TRUE(changed);
}
