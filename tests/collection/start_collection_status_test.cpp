// StartCollection from the collector's StartCollecting on: status, repeated calls, exceptions.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "collection/collector_fixture.h"
#include "service/wattleaf_service.h"

using namespace TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;
using Zq::Gantry::Server::Services::Wattleaf::WattleafHelper;
using Zq::Gantry::Server::Services::Wattleaf::WattleafService;

namespace {

using StartCollection = CollectorFixture;

}  // namespace

TEST_F(StartCollection, UnloadsWhenTheStatusMapHasNoKeyZero) {
  library.script.status = {{1, 1}};
  EXPECT_FALSE(StartTrusted());
  EXPECT_THAT(CollectorRecords(), ElementsAre(Info(L"Loaded DataCollector library\n"),
                                              Error(L"DataCollector StartCollecting() failed.\n")));
  ExpectUnloaded();
}

TEST_F(StartCollection, UnloadsWithoutAMessageOnAnUnknownStatus) {
  library.script.status = {{0, 7}};
  EXPECT_FALSE(StartTrusted());
  EXPECT_THAT(CollectorRecords(), ElementsAre(Info(L"Loaded DataCollector library\n")));
  EXPECT_EQ(helper->PlatformSupportState, 1);
  EXPECT_FALSE(helper->dataAvailable);
  ExpectUnloaded();
}

TEST_F(StartCollection, StoresStatusMinusOneAsTheSupportStateAndKeepsTheLibrary) {
  library.script.status = {{0, -1}};
  EXPECT_FALSE(StartTrusted());
  EXPECT_EQ(helper->IsPlatformSupported(), -1);
  EXPECT_THAT(
      CollectorRecords(),
      ElementsAre(Info(L"Loaded DataCollector library\n"),
                  Error(L"DataCollector StartCollecting() failed. Firmware update required\n")));
  EXPECT_NE(helper->collector.get(), nullptr);
  EXPECT_EQ(library.freed, 0);
  EXPECT_FALSE(helper->dataAvailable);
}

TEST_F(StartCollection, DecidesTheAnswerOfCommand7) {
  // Commands are answered by the singleton.
  auto& singleton = WattleafHelper::Instance();
  const ProtectedFolder folder(L"signed.dll");
  singleton.*(&OpenHelper::PlatformSupportState) = 1;
  singleton.*(&OpenHelper::collectionStarted) = false;
  singleton.*(&OpenHelper::hostDirectory) = folder.Path();
  singleton.*(&OpenHelper::collectionPath) = dataFolder.c_str();
  library.script.status = {{0, -1}};
  EXPECT_FALSE(singleton.StartCollection());

  WattleafService service;
  wchar_t input[] = L"";
  wchar_t* output = nullptr;
  EXPECT_EQ(service.ExecuteCommand(nullptr, 7, input, &output, {}, nullptr), 0);
  EXPECT_STREQ(output, L"-1");
  service.FreeResult(output);
  // The singleton outlives the fake library.
  (singleton.*(&OpenHelper::collector)).reset();
  (singleton.*(&OpenHelper::collectorModule)).reset();
}

TEST_F(StartCollection, StoresStatusZeroAsTheSupportStateAndKeepsTheLibrary) {
  library.script.status = {{0, 0}};
  EXPECT_FALSE(StartTrusted());
  EXPECT_EQ(helper->IsPlatformSupported(), 0);
  EXPECT_THAT(
      CollectorRecords(),
      ElementsAre(Info(L"Loaded DataCollector library\n"),
                  Error(L"DataCollector StartCollecting() failed. Device not supported.\n")));
  EXPECT_NE(helper->collector.get(), nullptr);
  EXPECT_EQ(library.freed, 0);
}

TEST_F(StartCollection, SucceedsWithoutWorkAfterAFailedOnLoad) {
  library.script.loads = false;
  EXPECT_FALSE(StartTrusted());
  const std::size_t lines = log.Records().size();
  EXPECT_TRUE(helper->StartCollection());
  EXPECT_EQ(library.loaded.size(), 1U);
  EXPECT_EQ(log.Records().size(), lines);
}

TEST_F(StartCollection, SucceedsWithoutWorkAfterAnUntrustedLibraryOrAFailedLoad) {
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

TEST_F(StartCollection, SucceedsWithoutWorkWhileTheFirstCallIsLoading) {
  library.script.onCall = [this](const std::string& call) {
    if (call == "create") {
      EXPECT_TRUE(helper->StartCollection());
    }
  };
  EXPECT_TRUE(StartTrusted());
  EXPECT_EQ(library.loaded.size(), 1U);
}

TEST_F(StartCollection, MakesDataAvailableOnlyWhenTheCollectorHasStarted) {
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

TEST_F(StartCollection, LogsAnExceptionFromAnyCollectorCallAndUnloads) {
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

TEST_F(StartCollection, DoesNotUseAnExceptionTextAsAFormatString) {
  ThrowIn("start", std::runtime_error("100% of %s, %d and %n"));
  EXPECT_FALSE(StartTrusted());
  EXPECT_EQ(log.Records().back(),
            Error(L"Exception in  StartCollection() - 100% of %s, %d and %n.\n"));
}

TEST_F(StartCollection, LogsTheTextOfAStandardExceptionAndUnloads) {
  ThrowIn("start", std::runtime_error("no sensor"));
  EXPECT_FALSE(StartTrusted());
  EXPECT_THAT(CollectorRecords(),
              ElementsAre(Info(L"Loaded DataCollector library\n"),
                          Error(L"Exception in  StartCollection() - no sensor.\n")));
  ExpectUnloaded();
}

TEST_F(StartCollection, LogsAnyOtherExceptionWithoutTextAndUnloads) {
  ThrowIn("start", 5);
  EXPECT_FALSE(StartTrusted());
  EXPECT_THAT(CollectorRecords(), ElementsAre(Info(L"Loaded DataCollector library\n"),
                                              Error(L"Exception in  StartCollection() - \n")));
  ExpectUnloaded();
}

namespace {

/// An exception that records the destruction of its last copy.
class RecordedException : public std::runtime_error {
 public:
  explicit RecordedException(std::vector<std::string>& calls)
      : std::runtime_error("recorded"),
        end_(&calls, [](std::vector<std::string>* log) { log->push_back("exception gone"); }) {}

 private:
  std::shared_ptr<std::vector<std::string>> end_;
};

}  // namespace

TEST_F(StartCollection, DestroysTheExceptionObjectBeforeFreeingTheLibrary) {
  library.script.onCall = [this](const std::string& call) {
    if (call == "start") throw RecordedException(library.script.calls);
  };
  EXPECT_FALSE(StartTrusted());
  EXPECT_THAT(library.script.calls, ElementsAre("create", "load", "callback", "start",
                                                "exception gone", "destroy", "free"));
}

TEST_F(StartCollection, IgnoresAStandardExceptionFromTheCollectorsDestructor) {
  library.script.loads = false;
  ThrowIn("destroy", std::runtime_error("late"));
  EXPECT_FALSE(StartTrusted());
  ExpectUnloaded();
}

TEST_F(StartCollection, IgnoresAnyOtherExceptionFromTheCollectorsDestructor) {
  library.script.loads = false;
  ThrowIn("destroy", 5);
  EXPECT_FALSE(StartTrusted());
  ExpectUnloaded();
}
