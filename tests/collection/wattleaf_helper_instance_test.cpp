// Concurrent first calls of WattleafHelper::Instance. A program of its own: nothing else in the
// process may use the singleton before.

#include <windows.h>

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <string_view>
#include <thread>
#include <vector>

#include "collection/wattleaf_helper.h"
#include "import_patch.h"

using Standin::ImportPatch;
using Zq::Gantry::Server::Services::Wattleaf::WattleafHelper;

namespace {

std::atomic<int> constructions{0};

/// Called once by each construction of a helper.
DWORD WINAPI FakeModuleFileName(HMODULE, wchar_t* buffer, DWORD size) {
  constexpr std::wstring_view kPath = L"C:\\host\\host.exe";
  ++constructions;
  return static_cast<DWORD>(kPath.copy(buffer, size));
}

}  // namespace

TEST(WattleafHelperInstance, IsConstructedOnceByConcurrentFirstCalls) {
  const ImportPatch patch("GetModuleFileNameW", &FakeModuleFileName);
  constexpr int kThreads = 8;
  // No std::latch: in libstdc++ 12 without a futex it may lose its last notification and hang.
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
  EXPECT_EQ(constructions, 1);
}
