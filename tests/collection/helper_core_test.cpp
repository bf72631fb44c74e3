#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include "collection/open_helper.h"
#include "import_patch.h"
#include "support/log_capture.h"

using namespace TestSupport;
using Standin::ImportPatch;
using testing::ElementsAre;
using testing::IsEmpty;
using Zq::Gantry::Server::Services::Wattleaf::WattleafHelper;

namespace {

int timesAskedForThePath = 0;
std::wstring fakePath;

DWORD WINAPI FakeModuleFileName(HMODULE module, wchar_t* buffer, DWORD size) {
  EXPECT_EQ(module, nullptr) << "the host's path, not this library's";
  EXPECT_EQ(size, 260U);
  ++timesAskedForThePath;
  // As a system does that writes no terminator where the path is cut.
  fakePath.copy(buffer, size);
  return static_cast<DWORD>(fakePath.size());
}

std::wstring HostDirectoryFor(const wchar_t* path) {
  fakePath = path;
  const ImportPatch patch("GetModuleFileNameW", &FakeModuleFileName);
  return OpenHelper().hostDirectory;
}

}  // namespace

TEST(HelperCore, AFreshHelperHasTheDefaultsOfItsFields) {
  const OpenHelper helper;
  EXPECT_EQ(helper.collector.get(), nullptr);
  EXPECT_FALSE(helper.collectorModule);
  EXPECT_EQ(helper.PlatformSupportState, -2);
  EXPECT_FALSE(helper.dataAvailable);
  EXPECT_THAT(helper.dailyLedger, IsEmpty());
  EXPECT_THAT(*helper.win32Apps.Current(), IsEmpty());
  EXPECT_THAT(*helper.uwpApps.Current(), IsEmpty());
  EXPECT_TRUE(helper.dataChanged);
  EXPECT_FALSE(helper.collectionStarted);
  EXPECT_EQ(helper.errorsAndWarningsJson, L"");
  EXPECT_STREQ(helper.collectionPath, L"C:\\ProgramData\\ZQ\\TelemetryDataCollector\\PCMCollector");
  EXPECT_STREQ(helper.collectorFileName, L"TelemetryZQXWrapper.dll");
  EXPECT_EQ(helper.worker, nullptr);
  EXPECT_FALSE(helper.running);
}

TEST(HelperCore, FieldsThatThreadsShareWithoutALockAreAtomic) {
  EXPECT_TRUE((std::is_same_v<decltype(OpenHelper::running), std::atomic<bool>>));
  EXPECT_TRUE((std::is_same_v<decltype(OpenHelper::dataAvailable), std::atomic<bool>>));
  EXPECT_TRUE((std::is_same_v<decltype(OpenHelper::dataChanged), std::atomic<bool>>));
  EXPECT_TRUE((std::is_same_v<decltype(OpenHelper::collectionStarted), std::atomic<bool>>));
  EXPECT_TRUE((std::is_same_v<decltype(OpenHelper::PlatformSupportState), std::atomic<int>>));
  EXPECT_TRUE(
      (std::is_same_v<decltype(OpenHelper::collectorModule),
                      Zq::Gantry::Platform::SharedResource<Zq::Gantry::Platform::ModulePolicy>>));
  // A host's thread never waits for the worker to read one.
  EXPECT_TRUE(std::atomic<bool>::is_always_lock_free && std::atomic<int>::is_always_lock_free);
}

TEST(HelperCore, AFreshHelperAnswersChangedAndNotAvailable) {
  OpenHelper helper;
  EXPECT_TRUE(helper.IsDataChanged());
  EXPECT_FALSE(helper.IsDataAvailable());
}

TEST(HelperCore, AskingForChangesDoesNotAcknowledgeThem) {
  OpenHelper helper;
  EXPECT_TRUE(helper.IsDataChanged());
  EXPECT_TRUE(helper.IsDataChanged());
}

TEST(HelperCore, TheHostDirectoryIsTheTextBeforeTheLastSeparator) {
  EXPECT_EQ(HostDirectoryFor(L"C:\\Program Files\\Host\\host.exe"), L"C:\\Program Files\\Host");
  EXPECT_EQ(HostDirectoryFor(L"C:/host/host.exe"), L"C:/host");
  EXPECT_EQ(HostDirectoryFor(L"C:\\a/b\\host.exe"), L"C:\\a/b");
  EXPECT_EQ(HostDirectoryFor(L"host.exe"), L"");
}

TEST(HelperCore, AFailedLookUpOfThePathGivesAnEmptyDirectory) {
  EXPECT_EQ(HostDirectoryFor(L""), L"");
}

TEST(HelperCore, APathThatFillsTheBufferStaysInsideIt) {
  const std::wstring path = L"C:\\" + std::wstring(400, L'x');
  EXPECT_EQ(HostDirectoryFor(path.c_str()), L"C:");
}

TEST(HelperCore, APathThatFillsTheBufferExactlyLosesItsLastCharacter) {
  // 260 characters before the name, and no terminator; the last of them is a separator.
  const std::wstring path = L"C:\\" + std::wstring(256, L'x') + L"\\host.exe";
  EXPECT_EQ(HostDirectoryFor(path.c_str()), L"C:");
}

TEST(HelperCore, ConcurrentFirstUsesGetOneObjectMadeOnce) {
  fakePath = L"C:\\host\\host.exe";
  const ImportPatch patch("GetModuleFileNameW", &FakeModuleFileName);
  timesAskedForThePath = 0;
  constexpr int kThreads = 8;
  // No std::latch: without a futex libstdc++ 12 may lose its last notification, and the test hung.
  std::atomic<int> arrived{0};
  std::vector<std::future<WattleafHelper*>> uses;
  for (int i = 0; i < kThreads; ++i) {
    uses.push_back(std::async(std::launch::async, [&arrived] {
      ++arrived;
      while (arrived < kThreads) std::this_thread::yield();
      return &WattleafHelper::Instance();
    }));
  }
  for (auto& use : uses) EXPECT_EQ(use.get(), &WattleafHelper::Instance());
  EXPECT_EQ(timesAskedForThePath, 1);
}

TEST(HelperCore, ACallbackWithoutItemsLeavesDataChanged) {
  auto& changed = WattleafHelper::Instance().*(&OpenHelper::dataChanged);
  changed = false;
  OpenHelper::MyNativeCallback(nullptr, 0);
  EXPECT_FALSE(changed);
  OpenHelper::MyNativeCallback(nullptr, 3);
  EXPECT_TRUE(changed);
}

TEST(HelperCore, EndingAnIdleHelperLogsNothing) {
  const LogCapture log;
  { const OpenHelper helper; }
  EXPECT_THAT(log.Records(), IsEmpty());
}

TEST(HelperCore, AWorkerThatCannotBeJoinedDoesNotEndTheProcess) {
  OpenHelper helper;
  // Joined already: a second join fails, and so does the detach behind it.
  helper.worker = std::make_unique<std::thread>([] {});
  helper.worker->join();
}

TEST(HelperCore, AHelperThatIsEndedByItsOwnWorkerLetsTheWorkerGoOn) {
  std::promise<void> ended;
  auto helper = std::make_unique<OpenHelper>();
  OpenHelper* raw = helper.release();
  std::promise<void> ready;
  raw->worker =
      std::make_unique<std::thread>([raw, &ended, isReady = ready.get_future()]() mutable {
        isReady.wait();
        delete raw;
        ended.set_value();
      });
  ready.set_value();
  ended.get_future().wait();
}
