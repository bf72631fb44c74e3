// A host that is killed in the middle of a pass, at random calls from the first file call to the
// last or from outside after random times, and the pass of the next process. The pass runs in
// ledger_pass_probe. The samples are not encrypted: data protection would take most of the time.
//
// Without WATTLEAF_ALL_MOMENTS in the environment, only a few moments are tested.
// WATTLEAF_SEED=N chooses other ones.

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "collection/notebook_folder.h"
#include "collection/pass_model.h"
#include "platform/win32/owners.h"

using namespace TestSupport;
using Zq::Gantry::Platform::UniqueHandle;

namespace {

constexpr int kMoments = 200;
constexpr int kQuickMoments = 5;
constexpr int kTimes = 40;
constexpr int kQuickTimes = 2;
constexpr unsigned kSeed = 20240508;
constexpr DWORD kInterrupted = 9;

/// The booked days without samples, which a cut ledger loses.
constexpr int kBookedDaysWithoutSamples = 187;

FolderState FolderAfterThePass() {
  DayEnergies memory;
  return AfterPass(FolderBeforeThePass(), memory);
}

/// Runs ledger_pass_probe, from the folder of this program, for one pass, and kills it after
/// `milliseconds`. Returns its exit status.
DWORD RunPass(const NotebookFolder& data, const std::vector<std::wstring>& steps,
              DWORD milliseconds = INFINITE) {
  std::array<wchar_t, MAX_PATH> path{};
  GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size() - 1));
  const std::wstring self = path.data();
  const TempFolder tool;
  WriteWholeFile(tool.File(L"report.xml"), ReportOfApplications());
  std::wstring line = L"\"" + self.substr(0, self.find_last_of(L'\\')) +
                      L"\\ledger_pass_probe.exe\" \"" + data.Path() + L"\" unprotected \"tool=" +
                      tool.File(L"report.xml") + L"\"";
  for (const std::wstring& step : steps) line += L" \"" + step + L"\"";
  line += L" pass=2024-05-08T14:30:00";

  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr,
                      nullptr, &startup, &process)) {
    ADD_FAILURE() << "cannot start the probe, Windows error " << GetLastError();
    return 0;
  }
  const UniqueHandle thread(process.hThread);
  const UniqueHandle owner(process.hProcess);
  if (WaitForSingleObject(process.hProcess, milliseconds) == WAIT_TIMEOUT) {
    TerminateProcess(process.hProcess, kInterrupted);
    WaitForSingleObject(process.hProcess, INFINITE);
  }
  DWORD status = 0;
  GetExitCodeProcess(process.hProcess, &status);
  return status;
}

/// The counted calls of an uninterrupted pass; call numbers begin at 1.
struct PassCalls {
  int all = 0;
  /// From the start of the process to its end.
  DWORD milliseconds = 0;
  /// The number of the call that opens the ledger to save it; the next two write and close it.
  int ledger = 0;
  /// The same for the store.
  int store = 0;
};

PassCalls CountCallsOfAnUninterruptedPass() {
  const NotebookFolder data(FolderBeforeThePass());
  const TempFolder reports;
  PassCalls calls;
  const ULONGLONG begun = GetTickCount64();
  EXPECT_EQ(RunPass(data, {L"report=" + reports.File(L"report.txt")}), 0U);
  calls.milliseconds = static_cast<DWORD>(GetTickCount64() - begun);
  EXPECT_EQ(Describe(data.State()), Describe(FolderAfterThePass()));
  std::sscanf(ReadWholeFile(reports.File(L"report.txt")).c_str(), "%d %d %d", &calls.all,
              &calls.ledger, &calls.store);
  return calls;
}

const PassCalls& CallsOfAnUninterruptedPass() {
  static const PassCalls calls = CountCallsOfAnUninterruptedPass();
  return calls;
}

/// What a killed process left, in the order of a pass.
enum class Moment {
  kReadingSamples,
  kAfterTheOnlyCopy,
  kSavingTheLedger,
  kDeletingSamples,
  kReport,
  kSavingTheStore,
  kAfterTheStore
};

/// The moment that follows from the files. Fails the test for files that no moment leaves.
Moment MomentOf(const FolderState& left) {
  const FolderState before = FolderBeforeThePass();
  const FolderState after = FolderAfterThePass();
  if (left.ledger != after.ledger) {
    EXPECT_EQ(left.samples, before.samples) << "deleted before the ledger is saved";
    EXPECT_EQ(left.store, before.store);
    EXPECT_TRUE(!left.ledger || left.ledger == before.ledger);
    if (!left.ledger) return Moment::kSavingTheLedger;
    return left.copies.count(kCopiedDay) != 0 ? Moment::kReadingSamples : Moment::kAfterTheOnlyCopy;
  }
  // The samples of the newest days are deleted first.
  std::set<int> deletable;
  std::ranges::set_difference(before.samples, after.samples,
                              std::inserter(deletable, deletable.end()));
  for (const int back : deletable) {
    const bool isDeleted = left.samples.count(back) == 0;
    if (isDeleted) continue;
    for (auto later = deletable.find(back); later != deletable.end(); ++later) {
      EXPECT_EQ(left.samples.count(*later), 1U) << *later << " is deleted before " << back;
    }
    EXPECT_EQ(left.store, before.store);
    return Moment::kDeletingSamples;
  }
  EXPECT_EQ(left.samples, after.samples);
  if (left.store == before.store) return Moment::kReport;
  if (!left.store) return Moment::kSavingTheStore;
  EXPECT_EQ(left.store, after.store);
  return Moment::kAfterTheStore;
}

/// The days that have energy after an uninterrupted pass but not in this folder.
int LostDays(const FolderState& folder) {
  const DayEnergies expected = *FolderAfterThePass().ledger;
  return static_cast<int>(std::ranges::count_if(expected, [&](const auto& entry) {
    return entry.second != 0.0F && folder.ledger->at(entry.first) == 0.0F;
  }));
}

/// How many days a moment costs. The ledger is saved after the only copy of a day was read.
int LostDaysOf(Moment moment) {
  if (moment == Moment::kAfterTheOnlyCopy) return 1;
  if (moment == Moment::kSavingTheLedger) return kBookedDaysWithoutSamples + 1;
  return 0;
}

/// Runs the pass that follows a killed one, and checks the folder before and after it.
Moment ExpectRepair(const NotebookFolder& data) {
  const FolderState left = data.State();
  const Moment moment = MomentOf(left);

  DayEnergies memory;
  const FolderState expected = AfterPass(left, memory);
  EXPECT_EQ(LostDays(expected), LostDaysOf(moment));
  const bool hasOlderRow = moment != Moment::kSavingTheStore;
  EXPECT_EQ(expected.store->size(), hasOlderRow ? 3U : 2U);

  EXPECT_EQ(RunPass(data, {}), 0U);
  EXPECT_EQ(Describe(data.State()), Describe(expected));
  EXPECT_TRUE(data.Names(L"unencrypt-*").empty());
  EXPECT_TRUE(data.Names(L"Powerlog.xml").empty());
  return moment;
}

/// Kills a pass at call number `call`, and runs the next one.
Moment KillAt(int call, int writtenPercent) {
  SCOPED_TRACE("killed at call " + std::to_string(call) + ", of a write " +
               std::to_string(writtenPercent) + " percent");
  const NotebookFolder data(FolderBeforeThePass());
  EXPECT_EQ(RunPass(data, {L"end-at=" + std::to_wstring(call),
                           L"written=" + std::to_wstring(writtenPercent)}),
            kInterrupted);
  return ExpectRepair(data);
}

using Counts = std::map<Moment, int>;

void Print(const std::string& how, Counts& counts) {
  std::printf(
      "figures: killed at %s: samples read %d, only copy read %d, ledger cut %d, "
      "samples deleted %d, report %d, store cut %d, store saved %d\n",
      how.c_str(), counts[Moment::kReadingSamples], counts[Moment::kAfterTheOnlyCopy],
      counts[Moment::kSavingTheLedger], counts[Moment::kDeletingSamples], counts[Moment::kReport],
      counts[Moment::kSavingTheStore], counts[Moment::kAfterTheStore]);
}

unsigned Seed() {
  const char* seed = std::getenv("WATTLEAF_SEED");
  return seed != nullptr ? static_cast<unsigned>(std::stoul(seed)) : kSeed;
}

}  // namespace

TEST(InterruptedDailyPass, IsRepairedByTheNextPass) {
  const PassCalls& calls = CallsOfAnUninterruptedPass();
  ASSERT_GT(calls.ledger, 500);
  ASSERT_GT(calls.store, calls.ledger + 20);
  std::mt19937 random(Seed());
  const auto below = [&](int end) {
    return static_cast<int>(random() % static_cast<unsigned>(end));
  };
  const int moments = AreAllMomentsWanted() ? kMoments : kQuickMoments;
  Counts counts;
  for (int i = 0; i < moments && !HasFailure(); ++i) {
    const int call = 1 + below(calls.all);
    ++counts[KillAt(call, below(101))];
  }
  Print(std::to_string(moments) + " of " + std::to_string(calls.all) + " calls, seed " +
            std::to_string(Seed()),
        counts);
}

TEST(InterruptedDailyPass, IsRepairedByTheNextPassWhenKilledFromOutside) {
  const DWORD milliseconds = CallsOfAnUninterruptedPass().milliseconds;
  std::mt19937 random(Seed());
  const int times = AreAllMomentsWanted() ? kTimes : kQuickTimes;
  Counts counts;
  int killed = 0;
  for (int i = 0; i < 10 * times && killed < times && !HasFailure(); ++i) {
    const auto time = static_cast<DWORD>(random() % (milliseconds + 1));
    SCOPED_TRACE("killed after " + std::to_string(time) + " ms");
    const NotebookFolder data(FolderBeforeThePass());
    if (RunPass(data, {}, time) != kInterrupted) continue;
    ++counts[ExpectRepair(data)];
    ++killed;
  }
  EXPECT_EQ(killed, times);
  Print(std::to_string(killed) + " times", counts);
}

TEST(InterruptedLedgerSave, KeepsAllSamplesUntilTheLedgerIsClosed) {
  const PassCalls& calls = CallsOfAnUninterruptedPass();
  // Before the ledger is opened, in the middle of its only write, before it is closed, and after.
  EXPECT_EQ(KillAt(calls.ledger, 50), Moment::kAfterTheOnlyCopy);
  EXPECT_EQ(KillAt(calls.ledger + 1, 50), Moment::kSavingTheLedger);
  EXPECT_EQ(KillAt(calls.ledger + 2, 50), Moment::kSavingTheLedger);
  EXPECT_EQ(KillAt(calls.ledger + 3, 50), Moment::kDeletingSamples);
}

TEST(InterruptedStoreSave, LosesOnlyRowsThatTheToolNoLongerReports) {
  const PassCalls& calls = CallsOfAnUninterruptedPass();
  EXPECT_EQ(KillAt(calls.store, 50), Moment::kReport);
  EXPECT_EQ(KillAt(calls.store + 1, 50), Moment::kSavingTheStore);
  EXPECT_EQ(KillAt(calls.store + 2, 50), Moment::kSavingTheStore);
}
