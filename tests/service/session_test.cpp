#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <new>
#include <string>
#include <thread>
#include <vector>

#include "collection/fake_collector.h"
#include "collection/open_helper.h"
#include "import_patch.h"
#include "service/wattleaf_service.h"
#include "support/cpp_library.h"
#include "support/log_capture.h"

using namespace TestSupport;
using Standin::ImportPatch;
using testing::ElementsAre;
using testing::IsEmpty;
using Zq::Gantry::Server::Services::Wattleaf::WattleafService;

namespace {

/// The name in the session record of a handle.
std::wstring NameOf(void* handle) { return *static_cast<wchar_t**>(handle); }

std::wstring NameKeptFor(std::wstring name) {
  WattleafService service;
  void* handle = nullptr;
  service.StartSession(name.data(), &handle);
  const std::wstring kept = NameOf(handle);
  service.EndSession(&handle);
  return kept;
}

/// Records the blocks that are freed while it exists. They are released only by its destructor, so
/// that no block is reused and counted twice. One at a time.
class FreedBlocks {
 public:
  FreedBlocks() {
    current_ = this;
    // Reserved up front: adding a block must not call the heap.
    blocks_.reserve(1000);
  }
  FreedBlocks(const FreedBlocks&) = delete;
  FreedBlocks& operator=(const FreedBlocks&) = delete;
  ~FreedBlocks() {
    std::sort(blocks_.begin(), blocks_.end());
    blocks_.erase(std::unique(blocks_.begin(), blocks_.end()), blocks_.end());
    for (void* block : blocks_) patch_.Original<void __cdecl(void*)>()(block);
  }

  std::ptrdiff_t Count(const void* block) const {
    return std::count(blocks_.begin(), blocks_.end(), block);
  }

 private:
  static void __cdecl Free(void* block) {
    if (current_->blocks_.size() < current_->blocks_.capacity()) {
      current_->blocks_.push_back(block);
      return;
    }
    current_->patch_.Original<void __cdecl(void*)>()(block);
  }

  static inline FreedBlocks* current_ = nullptr;
  std::vector<void*> blocks_;
  const ImportPatch patch_{"free", &Free};
  const ImportPatch patchedDelete_{TestSupport::CppLibrary(), "free", &Free};
};

// The block of a name of 64 characters and its terminator; no other allocation has this size.
constexpr std::size_t kNameBytes = 65 * sizeof(wchar_t);
void*(__cdecl* realMalloc)(std::size_t) = nullptr;
void* recordBlock = nullptr;

void* __cdecl NoMemoryForTheName(std::size_t bytes) {
  if (bytes == kNameBytes) return nullptr;
  void* block = realMalloc(bytes);
  if (bytes == sizeof(wchar_t*)) recordBlock = block;
  return block;
}

void WINAPI NoSleep(DWORD) {}

}  // namespace

TEST(StartSession, KeepsACopyOfTheNameUntilEndSession) {
  const LogCapture log;
  WattleafService service;
  std::wstring name = L"client";
  void* handle = nullptr;
  EXPECT_EQ(service.StartSession(name.data(), &handle), 0);
  ASSERT_NE(handle, nullptr);
  EXPECT_EQ(NameOf(handle), L"client");
  EXPECT_NE(*static_cast<wchar_t**>(handle), name.data());
  EXPECT_EQ(service.EndSession(&handle), 0);
  EXPECT_THAT(log.Records(), ElementsAre(Info(L"WattleafService::StartSession"),
                                         Info(L"WattleafService::EndSession")));
}

TEST(StartSession, OnlyLogsWithoutAHandle) {
  const LogCapture log;
  WattleafService service;
  std::wstring name = L"client";
  EXPECT_EQ(service.StartSession(name.data(), nullptr), 0);
  EXPECT_THAT(log.Records(), ElementsAre(Info(L"WattleafService::StartSession")));
}

TEST(StartSession, DoesNotReadTheNameWithoutAHandle) {
  const LogCapture log;
  WattleafService service;
  EXPECT_EQ(service.StartSession(nullptr, nullptr), 0);
  EXPECT_EQ(service.StartSession(reinterpret_cast<wchar_t*>(1), nullptr), 0);
  EXPECT_THAT(log.Records(), ElementsAre(Info(L"WattleafService::StartSession"),
                                         Info(L"WattleafService::StartSession")));
}

TEST(EndSession, OnlyLogsWithoutAHandle) {
  const LogCapture log;
  WattleafService service;
  EXPECT_EQ(service.EndSession(nullptr), 0);
  EXPECT_THAT(log.Records(), ElementsAre(Info(L"WattleafService::EndSession")));
}

TEST(EndSession, OnlyLogsForANullSession) {
  const LogCapture log;
  WattleafService service;
  void* handle = nullptr;
  EXPECT_EQ(service.EndSession(&handle), 0);
  EXPECT_THAT(log.Records(), ElementsAre(Info(L"WattleafService::EndSession")));
}

TEST(EndSession, DoesNotClearTheHandle) {
  WattleafService service;
  std::wstring name = L"client";
  void* handle = nullptr;
  service.StartSession(name.data(), &handle);
  const void* before = handle;
  service.EndSession(&handle);
  EXPECT_EQ(handle, before);
}

TEST(EndSession, FreesTheRecordAndItsName) {
  WattleafService service;
  std::wstring name = L"client";
  void* handle = nullptr;
  service.StartSession(name.data(), &handle);
  const void* copy = *static_cast<wchar_t**>(handle);
  const FreedBlocks freed;
  service.EndSession(&handle);
  EXPECT_EQ(freed.Count(copy), 1);
  EXPECT_EQ(freed.Count(handle), 1);
}

TEST(StartSession, ThrowsAndFreesTheRecordWhenTheNameCannotBeAllocated) {
  const LogCapture log;
  WattleafService service;
  std::wstring name(64, L'n');
  void* const before = &service;
  void* handle = before;
  const FreedBlocks freed;
  {
    const ImportPatch patch(TestSupport::CppLibrary(), "malloc", &NoMemoryForTheName);
    realMalloc = patch.Original<void*(std::size_t)>();
    EXPECT_THROW(service.StartSession(name.data(), &handle), std::bad_alloc);
  }
  EXPECT_EQ(handle, before);
  ASSERT_NE(recordBlock, nullptr);
  EXPECT_GE(freed.Count(recordBlock), 1);
  EXPECT_THAT(log.Records(), IsEmpty());
}

TEST(StartSession, KeepsAnEmptyName) { EXPECT_EQ(NameKeptFor(L""), L""); }

TEST(StartSession, CopiesANameOf64Characters) {
  const std::wstring name(64, L'n');
  EXPECT_EQ(NameKeptFor(name), name);
}

TEST(StartSession, ReplacesANameOf65CharactersByAnEmptyOne) {
  EXPECT_EQ(NameKeptFor(std::wstring(65, L'n')), L"");
}

TEST(StartSession, ReplacesANullNameByAnEmptyOne) {
  WattleafService service;
  void* handle = nullptr;
  EXPECT_EQ(service.StartSession(nullptr, &handle), 0);
  EXPECT_EQ(NameOf(handle), L"");
  service.EndSession(&handle);
}

TEST(SessionChangeTask, LogsLogonAndUnlock) {
  for (const unsigned long event : {5UL, 8UL}) {
    const LogCapture log;
    WattleafService().session_change_task(event, nullptr);
    EXPECT_THAT(log.Records(), ElementsAre(Info(L"Opening session\n")));
  }
}

TEST(SessionChangeTask, LogsLogoffAndLock) {
  for (const unsigned long event : {6UL, 7UL}) {
    const LogCapture log;
    WattleafService().session_change_task(event, nullptr);
    EXPECT_THAT(log.Records(), ElementsAre(Info(L"Locking or closing session\n")));
  }
}

TEST(SessionChangeTask, LogsNothingForOtherEvents) {
  for (const unsigned long event : {0UL, 1UL, 2UL, 3UL, 4UL, 9UL, 0xFFFFFFFFUL}) {
    const LogCapture log;
    WattleafService().session_change_task(event, nullptr);
    EXPECT_THAT(log.Records(), IsEmpty());
  }
}

TEST(SessionChangeTask, LeavesCollectionAndFlagsUnchanged) {
  const LogCapture log;
  CollectorScript script;
  OfSingleton(&OpenHelper::collector).reset(new FakeCollector(script));
  OfSingleton(&OpenHelper::running) = true;
  OfSingleton(&OpenHelper::dataAvailable) = true;
  OfSingleton(&OpenHelper::dataChanged) = true;
  OfSingleton(&OpenHelper::PlatformSupportState) = 1;
  for (unsigned long event = 0; event <= 20; ++event) {
    WattleafService().session_change_task(event, nullptr);
    WattleafService().power_event_task(event);
    WattleafService().control_code_task(event);
  }
  EXPECT_THAT(script.calls, IsEmpty());
  EXPECT_EQ(log.Records().size(), 4U) << "two events open a session and two close one";
  EXPECT_NE(OfSingleton(&OpenHelper::collector).get(), nullptr);
  EXPECT_TRUE(OfSingleton(&OpenHelper::running));
  EXPECT_TRUE(OfSingleton(&OpenHelper::dataAvailable));
  EXPECT_TRUE(OfSingleton(&OpenHelper::dataChanged));
  EXPECT_EQ(OfSingleton(&OpenHelper::PlatformSupportState), 1);
  OfSingleton(&OpenHelper::collector).reset();
}

TEST(StartupTask, StartsTheWorkerOfTheSingletonWhichOutlivesTheService) {
  const ImportPatch patch("Sleep", &NoSleep);
  // Without support the worker ends after its delay.
  OfSingleton(&OpenHelper::PlatformSupportState) = 0;
  {
    WattleafService service;
    EXPECT_EQ(OfSingleton(&OpenHelper::worker), nullptr);
    service.startup_task();
  }
  EXPECT_TRUE(OfSingleton(&OpenHelper::running));
  ASSERT_NE(OfSingleton(&OpenHelper::worker), nullptr);
  OfSingleton(&OpenHelper::worker)->join();
}

TEST(WattleafService, DoesNothingOnPowerEventsAndControlCodes) {
  const LogCapture log;
  WattleafService service;
  for (const unsigned long code : {0UL, 7UL, 0x80000000UL}) {
    service.power_event_task(code);
    service.control_code_task(code);
  }
  service.extra_task();
  EXPECT_THAT(log.Records(), IsEmpty());
}

TEST(QueryReady, IsAlwaysTrue) { EXPECT_TRUE(WattleafService().query_ready()); }

TEST(FreeResult, AcceptsANullPointer) { WattleafService().FreeResult(nullptr); }

TEST(FreeResult, FreesTheBlockOnce) {
  void* block = std::malloc(16);
  ASSERT_NE(block, nullptr);
  const FreedBlocks freed;
  WattleafService().FreeResult(block);
  EXPECT_EQ(freed.Count(block), 1);
}
