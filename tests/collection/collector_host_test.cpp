#include <windows.h>

#include <rpc.h>
#include <wincrypt.h>

#include <mscat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "collection/fake_collector.h"
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
using Zq::Gantry::Server::Services::Wattleaf::WattleafHelper;
using Zq::Gantry::Server::Services::Wattleaf::WattleafService;

namespace {

const HMODULE kPlayedModule = reinterpret_cast<HMODULE>(0x5EED);

/// The played loader: one library that exports what the test says.
struct Loader {
  CollectorScript script;
  bool loads = true;
  bool exports = true;
  bool makesNull = false;
  std::vector<std::wstring> loaded;
  int freed = 0;
  FARPROC(WINAPI* realGetProcAddress)(HMODULE, const char*) = nullptr;
};
Loader* loader = nullptr;

Zq::Gantry::Server::Services::Wattleaf::DataCollector* CreatePlayed() {
  loader->script.calls.push_back("create");
  return loader->makesNull ? nullptr : new FakeCollector(loader->script);
}

HMODULE WINAPI PlayedLoadLibrary(const wchar_t* name) {
  loader->loaded.push_back(name);
  return loader->loads ? kPlayedModule : nullptr;
}

FARPROC WINAPI PlayedGetProcAddress(HMODULE module, const char* name) {
  if (module != kPlayedModule) return loader->realGetProcAddress(module, name);
  EXPECT_STREQ(name, "CreateZQXExportClass");
  if (!loader->exports) return nullptr;
  return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&CreatePlayed));
}

BOOL WINAPI PlayedFreeLibrary(HMODULE module) {
  EXPECT_EQ(module, kPlayedModule);
  loader->script.calls.push_back("free");
  ++loader->freed;
  return TRUE;
}

RPC_STATUS RPC_ENTRY NoCallActive(RPC_BINDING_HANDLE, void*) { return RPC_S_NO_CALL_ACTIVE; }

BOOL WINAPI NoCatalogs(HCATADMIN*, const GUID*, const wchar_t*, const CERT_STRONG_SIGN_PARA*,
                       DWORD) {
  SetLastError(ERROR_CALL_NOT_IMPLEMENTED);
  return FALSE;
}

std::wstring ProgramFolder() {
  std::wstring path(MAX_PATH, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), MAX_PATH));
  return path.substr(0, path.find_last_of(L'\\'));
}

/// A folder below Program Files that holds the collector's file, signed or not.
class ProtectedFolder {
 public:
  explicit ProtectedFolder(const wchar_t* sample) {
    EXPECT_TRUE(CreateDirectoryW(path_.c_str(), nullptr));
    EXPECT_TRUE(CopyFileW((ProgramFolder() + L"\\collection-samples\\" + sample).c_str(),
                          File().c_str(), FALSE));
  }
  ProtectedFolder(const ProtectedFolder&) = delete;
  ProtectedFolder& operator=(const ProtectedFolder&) = delete;
  ~ProtectedFolder() {
    DeleteFileW(File().c_str());
    RemoveDirectoryW(path_.c_str());
  }
  const std::wstring& Path() const { return path_; }

 private:
  std::wstring File() const { return path_ + L"\\TelemetryZQXWrapper.dll"; }
  std::wstring path_ =
      L"C:\\Program Files\\wattleaf-test-" + std::to_wstring(GetCurrentProcessId());
};

class CollectorHost : public testing::Test {
 protected:
  CollectorHost() {
    loader = &played;
    played.realGetProcAddress =
        patchedGetProcAddress.Original<FARPROC WINAPI(HMODULE, const char*)>();
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
    for (const LogRecord& record : log.Records()) {
      if (record.text.find(L"DataCollector") != std::wstring::npos ||
          record.text.find(L"StartCollection()") != std::wstring::npos) {
        own.push_back(record);
      }
    }
    return own;
  }

  void ExpectUnloaded() {
    EXPECT_EQ(helper->collector.get(), nullptr);
    EXPECT_FALSE(helper->collectorModule);
    EXPECT_EQ(played.freed, 1);
  }

  TempFolder data;
  std::wstring dataFolder;
  LogCapture log;
  Loader played;
  ImportPatch patchedLoadLibrary{"LoadLibraryW", &PlayedLoadLibrary};
  ImportPatch patchedGetProcAddress{"GetProcAddress", &PlayedGetProcAddress};
  ImportPatch patchedFreeLibrary{"FreeLibrary", &PlayedFreeLibrary};
  ImportPatch patchedCall{"RpcServerInqCallAttributesW", &NoCallActive};
  ImportPatch patchedCatalogs{"CryptCATAdminAcquireContext2", &NoCatalogs};
  std::unique_ptr<OpenHelper> helper;
};

}  // namespace

TEST_F(CollectorHost, ADecidedStateOtherThanSupportedLoadsAndLogsNothing) {
  for (const int state : {0, -1}) {
    helper->PlatformSupportState = state;
    EXPECT_FALSE(helper->StartCollection());
    EXPECT_FALSE(helper->collectionStarted);
  }
  EXPECT_THAT(played.loaded, IsEmpty());
  EXPECT_THAT(log.Records(), IsEmpty());
}

TEST_F(CollectorHost, ATrustedCollectorIsLoadedByItsBareNameAndStarted) {
  EXPECT_TRUE(StartTrusted());
  EXPECT_THAT(played.loaded, ElementsAre(L"TelemetryZQXWrapper.dll"));
  EXPECT_THAT(played.script.calls, ElementsAre("create", "load", "callback", "start"));
  EXPECT_THAT(played.script.kinds, ElementsAre(0));
  EXPECT_THAT(OwnRecords(), ElementsAre(Info(L"Loaded DataCollector library\n"),
                                        Info(L"DataCollector StartCollecting() success\n ")));
  EXPECT_TRUE(helper->dataAvailable);
  EXPECT_EQ(helper->PlatformSupportState, 1);
  EXPECT_NE(helper->collector.get(), nullptr);
  EXPECT_EQ(helper->collectorModule.get(), kPlayedModule);
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
  helper->StartCollection();
  EXPECT_THAT(log.Records(), Contains(Info(L"Security - GetSecurityCatalogInfo - File = " +
                                           folder.Path() + L"\\TelemetryZQXWrapper.dll")));
}

TEST_F(CollectorHost, ALibraryThatFailsTheSignatureCheckIsNotLoaded) {
  const ProtectedFolder folder(L"unsigned.dll");
  helper->hostDirectory = folder.Path();
  EXPECT_FALSE(helper->StartCollection());
  EXPECT_THAT(played.loaded, IsEmpty());
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
  EXPECT_THAT(played.loaded, IsEmpty());
  EXPECT_THAT(OwnRecords(), ElementsAre(Warning(L"Unable to load DataCollector library.")));
}

TEST_F(CollectorHost, TheLocationIsAskedOnlyBehindATrustedSignature) {
  const ProtectedFolder folder(L"unsigned.dll");
  helper->hostDirectory = folder.Path();
  helper->StartCollection();
  for (const LogRecord& record : log.Records()) {
    EXPECT_EQ(record.text.find(L"GetFullPathName"), std::wstring::npos);
  }
}

TEST_F(CollectorHost, AnEmptyHostDirectoryChecksTheBareFileName) {
  helper->hostDirectory.clear();
  EXPECT_FALSE(helper->StartCollection());
  EXPECT_THAT(log.Records(), Contains(Info(L"Security - GetSecurityCatalogInfo - File = "
                                           L"TelemetryZQXWrapper.dll")));
}

TEST_F(CollectorHost, AFailedLoadWarnsAndFreesNothing) {
  played.loads = false;
  EXPECT_FALSE(StartTrusted());
  EXPECT_THAT(OwnRecords(), ElementsAre(Warning(L"Unable to load DataCollector library.")));
  EXPECT_EQ(played.freed, 0);
}

TEST_F(CollectorHost, AMissingExportUnloads) {
  played.exports = false;
  EXPECT_FALSE(StartTrusted());
  EXPECT_THAT(OwnRecords(), ElementsAre(Error(L"Unable to find methods in DataCollector.\n")));
  ExpectUnloaded();
}

TEST_F(CollectorHost, ALibraryThatMakesNoObjectCountsAsOneThatCannotLoad) {
  played.makesNull = true;
  EXPECT_FALSE(StartTrusted());
  EXPECT_THAT(OwnRecords(), ElementsAre(Info(L"Loaded DataCollector library\n"),
                                        Error(L"DataCollector OnLoad() failed.\n")));
  ExpectUnloaded();
}

TEST_F(CollectorHost, OnLoadFalseDestroysTheObjectBeforeTheLibraryIsFreed) {
  played.script.loads = false;
  EXPECT_FALSE(StartTrusted());
  EXPECT_THAT(played.script.calls, ElementsAre("create", "load", "destroy", "free"));
  EXPECT_THAT(OwnRecords(), ElementsAre(Info(L"Loaded DataCollector library\n"),
                                        Error(L"DataCollector OnLoad() failed.\n")));
  ExpectUnloaded();
}

TEST_F(CollectorHost, AStatusMapWithoutKeyZeroUnloads) {
  played.script.status = {{1, 1}};
  EXPECT_FALSE(StartTrusted());
  EXPECT_THAT(OwnRecords(), ElementsAre(Info(L"Loaded DataCollector library\n"),
                                        Error(L"DataCollector StartCollecting() failed.\n")));
  ExpectUnloaded();
}

TEST_F(CollectorHost, AnUnknownStatusUnloadsWithoutAMessage) {
  played.script.status = {{0, 7}};
  EXPECT_FALSE(StartTrusted());
  EXPECT_THAT(OwnRecords(), ElementsAre(Info(L"Loaded DataCollector library\n")));
  EXPECT_EQ(helper->PlatformSupportState, 1);
  EXPECT_FALSE(helper->dataAvailable);
  ExpectUnloaded();
}

TEST_F(CollectorHost, StatusMinusOneOverridesTheProbesAndKeepsTheLibrary) {
  played.script.status = {{0, -1}};
  EXPECT_FALSE(StartTrusted());
  EXPECT_EQ(helper->IsPlatformSupported(), -1);
  EXPECT_THAT(
      OwnRecords(),
      ElementsAre(Info(L"Loaded DataCollector library\n"),
                  Error(L"DataCollector StartCollecting() failed. Firmware update required\n")));
  EXPECT_NE(helper->collector.get(), nullptr);
  EXPECT_EQ(played.freed, 0);
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
  played.script.status = {{0, -1}};
  EXPECT_FALSE(one.StartCollection());

  WattleafService service;
  wchar_t input[] = L"";
  wchar_t* output = nullptr;
  EXPECT_EQ(service.ExecuteCommand(nullptr, 7, input, &output, {}, nullptr), 0);
  EXPECT_STREQ(output, L"-1");
  service.FreeResult(output);
  // The played library is gone before the one helper ends.
  (one.*(&OpenHelper::collector)).reset();
  (one.*(&OpenHelper::collectorModule)).reset();
}

TEST_F(CollectorHost, StatusZeroOverridesTheProbesAndKeepsTheLibrary) {
  played.script.status = {{0, 0}};
  EXPECT_FALSE(StartTrusted());
  EXPECT_EQ(helper->IsPlatformSupported(), 0);
  EXPECT_THAT(
      OwnRecords(),
      ElementsAre(Info(L"Loaded DataCollector library\n"),
                  Error(L"DataCollector StartCollecting() failed. Device not supported.\n")));
  EXPECT_NE(helper->collector.get(), nullptr);
  EXPECT_EQ(played.freed, 0);
}

TEST_F(CollectorHost, ASecondStartAfterAFailedOneIsASuccessWithoutWork) {
  played.script.loads = false;
  EXPECT_FALSE(StartTrusted());
  const std::size_t lines = log.Records().size();
  EXPECT_TRUE(helper->StartCollection());
  EXPECT_EQ(played.loaded.size(), 1U);
  EXPECT_EQ(log.Records().size(), lines);
}

TEST_F(CollectorHost, AStandardExceptionIsLoggedWithItsTextAndUnloads) {
  played.script.onStart = [] { throw std::runtime_error("no sensor"); };
  EXPECT_FALSE(StartTrusted());
  EXPECT_THAT(OwnRecords(), ElementsAre(Info(L"Loaded DataCollector library\n"),
                                        Error(L"Exception in  StartCollection() - no sensor.\n")));
  ExpectUnloaded();
}

TEST_F(CollectorHost, AnyOtherExceptionIsLoggedWithoutATextAndUnloads) {
  played.script.onStart = [] { throw 5; };
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
  played.script.onStart = [this] { throw WitnessedFailure(played.script.calls); };
  EXPECT_FALSE(StartTrusted());
  EXPECT_THAT(played.script.calls, ElementsAre("create", "load", "callback", "start",
                                               "exception gone", "destroy", "free"));
}

TEST_F(CollectorHost, AnExceptionOfTheCollectorsDestructorIsDropped) {
  played.script.loads = false;
  played.script.onDestroy = [] { throw std::runtime_error("late"); };
  EXPECT_FALSE(StartTrusted());
  ExpectUnloaded();
}

TEST_F(CollectorHost, StopWithoutCollectorDoesNothing) {
  helper->StopCollection();
  EXPECT_THAT(played.script.calls, IsEmpty());
  EXPECT_THAT(log.Records(), IsEmpty());
}

TEST_F(CollectorHost, StopAsksForTheOneKindAndLeavesTheLibraryLoaded) {
  StartTrusted();
  played.script.kinds.clear();
  helper->StopCollection();
  EXPECT_THAT(played.script.calls, Contains("stop"));
  EXPECT_THAT(played.script.kinds, ElementsAre(0));
  EXPECT_NE(helper->collector.get(), nullptr);
  EXPECT_EQ(played.freed, 0);
}

TEST_F(CollectorHost, TheHelpersEndStopsDestroysAndFreesInThisOrder) {
  StartTrusted();
  played.script.calls.clear();
  helper.reset();
  EXPECT_THAT(played.script.calls, ElementsAre("stop", "destroy", "free"));
}

TEST_F(CollectorHost, TheHelpersEndDropsAnExceptionOfTheCollector) {
  StartTrusted();
  played.script.onDestroy = [] { throw std::runtime_error("late"); };
  helper.reset();
  EXPECT_EQ(played.freed, 1);
}

TEST_F(CollectorHost, TheCallbackWritesDataChangedOnlyForAPositiveCount) {
  StartTrusted();
  ASSERT_NE(played.script.callback, nullptr);
  auto& changed = OpenHelper::Instance().*(&OpenHelper::dataChanged);
  ASSERT_TRUE(changed);
  changed = false;
  played.script.callback(nullptr, 0);
  EXPECT_FALSE(changed);
  played.script.callback(nullptr, -1);
  EXPECT_FALSE(changed);
  played.script.callback(nullptr, 1);
  EXPECT_TRUE(changed);
}
