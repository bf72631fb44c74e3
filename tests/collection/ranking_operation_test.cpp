// GetTop20PowerApps: input, store, catalogues and locks.

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "base/failing_status.h"
#include "base/fake_attributes.h"
#include "collection/ranking_fixture.h"
#include "import_patch.h"
#include "platform/win32/owners.h"

using namespace TestSupport;
using Standin::ImportPatch;
using Zq::Gantry::Platform::UniqueFileHandle;

namespace {

using GetTop20PowerApps = RankingFixture;

}  // namespace

TEST_F(GetTop20PowerApps, ReturnsAnEmptyArrayForAnEmptyStore) {
  WriteStore({});
  EXPECT_EQ(Rank(L"?7"), L"[]");
}

TEST_F(GetTop20PowerApps, RanksTheStoreInTheDataFolder) {
  WriteStore({StoreRow("a", "Small", "3"), StoreRow("b", "Large", "5"),
              StoreRow("c", "Old", "8", "2026-11-07:10:30:14"),
              StoreRow("d", "Oldest", "8", "2026-11-07:10:30:15")});
  EXPECT_EQ(
      Rank(L"?7"),
      LR"([{"Name":"Oldest","Icon":"","Value":50.0},{"Name":"Large","Icon":"","Value":31.25},)"
      LR"({"Name":"Small","Icon":"","Value":18.75}])");
}

TEST_F(GetTop20PowerApps, ReturnsNothingForAnInputWithoutDays) {
  WriteStore({StoreRow("a", "A", "1", "2026-11-14:10:30:14")});
  EXPECT_EQ(Rank(L""), L"[]");
  EXPECT_EQ(Rank(folder.Path()), L"[]");
  EXPECT_EQ(Rank(L"?0"), L"[]");
  EXPECT_EQ(Rank(L"?soon"), L"[]");
}

TEST_F(GetTop20PowerApps, LeavesTheInputUnchanged) {
  WriteStore({});
  std::wstring request = folder.File(L"icons") + L"?7";
  const std::wstring before = request;
  std::wstring result;
  helper.GetTop20PowerApps(request, result);
  EXPECT_EQ(request, before);
}

TEST_F(GetTop20PowerApps, RanksOnlyExecutablesInTheDesktopCatalogue) {
  // The device is not a drive of this machine, so there is no icon.
  helper.win32Apps.Replace({{L"Desktop", L""}});
  WriteStore({StoreRow("\\Device\\Nowhere\\a.exe", "Desktop", "3"),
              StoreRow("\\Device\\Nowhere\\b.exe", "Unknown", "1")});
  EXPECT_EQ(Rank(folder.Path() + L"?7"), LR"([{"Name":"Desktop","Icon":"","Value":75.0}])");
}

TEST_F(GetTop20PowerApps, ReadsTheStoreAndTheCataloguesAtEachCall) {
  WriteStore({StoreRow("a", "A", "1")});
  EXPECT_EQ(Rank(L"?7"), LR"([{"Name":"A","Icon":"","Value":100.0}])");
  WriteStore({StoreRow("\\Device\\Any", "Desktop", "3"), StoreRow("b", "B", "1")});
  EXPECT_EQ(Rank(L"?7"), LR"([{"Name":"B","Icon":"","Value":25.0}])");
  helper.win32Apps.Replace({{L"Desktop", L""}});
  EXPECT_EQ(Rank(L"?7"),
            LR"([{"Name":"Desktop","Icon":"","Value":75.0},)"
            LR"({"Name":"B","Icon":"","Value":25.0}])");
  FakeClock::Set("2026-12-14 10:30:15");
  EXPECT_EQ(Rank(L"?7"), L"[]");
  WriteWholeFile(StorePath(), "no JSON");
  EXPECT_EQ(Rank(L"?7"), L"untouched");
}

TEST_F(GetTop20PowerApps, ReturnsTheTextUpToANonFiniteValue) {
  WriteStore({StoreRow("a", "A", "0"), StoreRow("b", "B", "0")});
  EXPECT_THAT(Rank(L"?7"), testing::AnyOf(LR"([{"Name":"A","Icon":"","Value":)",
                                          LR"([{"Name":"B","Icon":"","Value":)"));
}

TEST_F(GetTop20PowerApps, LeavesTheResultWithoutAStore) { EXPECT_EQ(Rank(L"?7"), L"untouched"); }

TEST_F(GetTop20PowerApps, LeavesTheResultWhenTheStoreIsADirectory) {
  CreateDirectoryW(StorePath().c_str(), nullptr);
  EXPECT_EQ(Rank(L"?7"), L"untouched");
}

TEST_F(GetTop20PowerApps, LeavesTheResultWhenTheStoreIsALink) {
  WriteStore({StoreRow("a", "A", "1")});
  const FakeReparsePoint link(StorePath(), IO_REPARSE_TAG_SYMLINK);
  EXPECT_EQ(Rank(L"?7"), L"untouched");
}

TEST_F(GetTop20PowerApps, LeavesTheResultWhenTheStatusOfTheStoreCannotBeRead) {
  WriteStore({StoreRow("a", "A", "1")});
  const FailingStatus failure(StorePath());
  EXPECT_EQ(Rank(L"?7"), L"untouched");
}

TEST_F(GetTop20PowerApps, LeavesTheResultWhenTheStoreIsNotAnArray) {
  for (const char* text :
       {"", "{}", "7", "null", "[", "[1,]", "[]x", "no JSON", "\xFF\xFE[\0]\0"}) {
    WriteWholeFile(StorePath(), text);
    EXPECT_EQ(Rank(L"?7"), L"untouched") << text;
  }
}

TEST_F(GetTop20PowerApps, LeavesTheResultWhenTheStoreCannotBeOpened) {
  WriteStore({StoreRow("a", "A", "1")});
  const UniqueFileHandle locked(
      CreateFileW(StorePath().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(locked);
  EXPECT_EQ(Rank(L"?7"), L"untouched");
}

TEST_F(GetTop20PowerApps, LeavesTheResultOnAnException) {
  WriteStore({StoreRow("a", "A", "1")});
  FakeClock::Break();
  EXPECT_EQ(Rank(L"?7"), L"untouched");
  FakeClock::Set("2026-11-14 10:30:15");
  EXPECT_NE(Rank(L"?7"), L"untouched");
}

TEST_F(GetTop20PowerApps, DoesNotTakeTheLedgerLock) {
  WriteStore({});
  const std::lock_guard pass(helper.dataMutex);
  EXPECT_EQ(Rank(L"?7"), L"[]");
}

namespace {

std::mutex* g_storeMutex = nullptr;
std::vector<std::string> g_steps;

/// Records a step and whether the store is locked.
void RecordStep(const std::string& step) {
  bool isFree = false;
  std::thread([&] {
    isFree = g_storeMutex->try_lock();
    if (isFree) g_storeMutex->unlock();
  }).join();
  g_steps.push_back(step + (isFree ? ", free" : ", locked"));
}

errno_t __cdecl RecordedOpen(std::FILE** file, const wchar_t* path, const wchar_t* mode) {
  RecordStep("open");
  *file = _wfopen(path, mode);
  return *file != nullptr ? 0 : EACCES;
}

BOOL WINAPI RecordedCopy(const char*, const char*, BOOL) {
  RecordStep("copy");
  return TRUE;
}

}  // namespace

TEST_F(GetTop20PowerApps, LocksTheStoreOnlyWhileItIsOpen) {
  g_steps.clear();
  g_storeMutex = &helper.storeMutex;
  const ImportPatch open("_wfopen_s", &RecordedOpen);
  const ImportPatch copy("CopyFileA", &RecordedCopy);
  helper.uwpApps.Replace({{"Alder", {"", "logo"}}});
  WriteStore({StoreRow("Alder", "Meadow", "1")});
  EXPECT_NE(Rank(L"?7"), L"untouched");
  EXPECT_THAT(g_steps, testing::ElementsAre("open, locked", "copy, free"));
}
