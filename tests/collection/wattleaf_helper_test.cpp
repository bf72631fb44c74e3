#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include "collection/open_helper.h"
#include "import_patch.h"
#include "support/log_capture.h"

using namespace TestSupport;
using Standin::ImportPatch;
using testing::IsEmpty;

namespace {

std::wstring fakePath;

DWORD WINAPI FakeModuleFileName(HMODULE module, wchar_t* buffer, DWORD size) {
  EXPECT_EQ(module, nullptr) << "the host's path, not this library's";
  EXPECT_EQ(size, 260U);
  // Some versions of Windows write no terminator where the path is truncated.
  fakePath.copy(buffer, size);
  return static_cast<DWORD>(fakePath.size());
}

std::wstring HostDirectoryFor(const wchar_t* path) {
  fakePath = path;
  const ImportPatch patch("GetModuleFileNameW", &FakeModuleFileName);
  return OpenHelper().hostDirectory;
}

/// For pthread_join and pthread_detach.
int __cdecl RefuseThread(std::uintptr_t) { return EINVAL; }

}  // namespace

TEST(WattleafHelper, HasDefaultFieldsWhenConstructed) {
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

TEST(WattleafHelper, HasAtomicFieldsWhereThreadsShareThemWithoutALock) {
  EXPECT_TRUE((std::is_same_v<decltype(OpenHelper::running), std::atomic<bool>>));
  EXPECT_TRUE((std::is_same_v<decltype(OpenHelper::dataAvailable), std::atomic<bool>>));
  EXPECT_TRUE((std::is_same_v<decltype(OpenHelper::dataChanged), std::atomic<bool>>));
  EXPECT_TRUE((std::is_same_v<decltype(OpenHelper::collectionStarted), std::atomic<bool>>));
  EXPECT_TRUE((std::is_same_v<decltype(OpenHelper::PlatformSupportState), std::atomic<int>>));
  EXPECT_TRUE(
      (std::is_same_v<decltype(OpenHelper::collectorModule),
                      Zq::Gantry::Platform::SharedResource<Zq::Gantry::Platform::ModulePolicy>>));
  // A host's thread never waits for the worker.
  EXPECT_TRUE(std::atomic<bool>::is_always_lock_free && std::atomic<int>::is_always_lock_free);
}

TEST(WattleafHelper, ReportsChangedAndUnavailableDataWhenConstructed) {
  OpenHelper helper;
  EXPECT_TRUE(helper.IsDataChanged());
  EXPECT_FALSE(helper.IsDataAvailable());
}

TEST(IsDataChanged, DoesNotResetTheFlag) {
  OpenHelper helper;
  EXPECT_TRUE(helper.IsDataChanged());
  EXPECT_TRUE(helper.IsDataChanged());
}

TEST(WattleafHelper, TakesTheHostDirectoryUpToTheLastSeparator) {
  EXPECT_EQ(HostDirectoryFor(L"C:\\Program Files\\Host\\host.exe"), L"C:\\Program Files\\Host");
  EXPECT_EQ(HostDirectoryFor(L"C:/host/host.exe"), L"C:/host");
  EXPECT_EQ(HostDirectoryFor(L"C:\\a/b\\host.exe"), L"C:\\a/b");
  EXPECT_EQ(HostDirectoryFor(L"host.exe"), L"");
}

TEST(WattleafHelper, HasAnEmptyHostDirectoryWhenThePathIsUnavailable) {
  EXPECT_EQ(HostDirectoryFor(L""), L"");
}

TEST(WattleafHelper, TruncatesAHostPathThatOverflowsTheBuffer) {
  const std::wstring path = L"C:\\" + std::wstring(400, L'x');
  EXPECT_EQ(HostDirectoryFor(path.c_str()), L"C:");
}

TEST(WattleafHelper, DropsTheLastCharacterOfAHostPathThatFillsTheBuffer) {
  // 260 characters before the name, and no terminator; the last of them is a separator.
  const std::wstring path = L"C:\\" + std::wstring(256, L'x') + L"\\host.exe";
  EXPECT_EQ(HostDirectoryFor(path.c_str()), L"C:");
}

TEST(WattleafHelper, LogsNothingWhenDestroyedIdle) {
  const LogCapture log;
  { const OpenHelper helper; }
  EXPECT_THAT(log.Records(), IsEmpty());
}

TEST(WattleafHelper, SurvivesDestructionWithAWorkerThatCannotBeJoined) {
  OpenHelper helper;
  // Already joined: a second join fails, and so does the detach that follows.
  helper.worker = std::make_unique<std::thread>([] {});
  helper.worker->join();
}

TEST(WattleafHelper, KeepsTheObjectOfAWorkerThatCanBeNeitherJoinedNorDetached) {
  const HMODULE caller = Standin::ModuleThatCalls("pthread_join");
  if (Standin::FindImportSlot(caller, "pthread_join") == nullptr) {
    GTEST_SKIP() << "this C++ library has other calls for its threads";
  }
  auto helper = std::make_unique<OpenHelper>();
  std::promise<void> mayEnd;
  std::promise<void> hasEnded;
  helper->worker = std::make_unique<std::thread>([&] {
    mayEnd.get_future().wait();
    hasEnded.set_value();
  });
  const ImportPatch noJoin(caller, "pthread_join", &RefuseThread);
  const ImportPatch noDetach(caller, "pthread_detach", &RefuseThread);
  // Deleting the object, whose thread still runs, would end the process.
  helper.reset();
  mayEnd.set_value();
  hasEnded.get_future().wait();
}

TEST(WattleafHelper, DetachesTheWorkerThatDestroysIt) {
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
