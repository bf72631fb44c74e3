// Passes during which the disk is full, from each of their writes on or for that write alone, with
// room for a part of it. Then the next pass, of the same process and of another one, with room for
// everything.
//
// Without WATTLEAF_ALL_MOMENTS in the environment, only some of the cases are tested.

#include "collection/full_disk.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "collection/notebook_folder.h"
#include "collection/pass_model.h"
#include "collection/ranking_fixture.h"
#include "collection/whole_pass_fixture.h"

using namespace TestSupport;

namespace {

/// A full disk: the number of the first write that does not fit, the part of it that does, and
/// whether there is room again for the next one.
struct Shortage {
  int write = 0;
  int quarters = 0;
  bool lasts = true;

  [[nodiscard]] int RoomFor(int number) const {
    if (number == write) return quarters;
    return number > write && lasts ? 0 : FullDisk::kAll;
  }
};

/// The names of the files that a pass writes, in order.
using Writes = std::vector<std::wstring>;

bool IsCopy(const std::wstring& name) { return name.starts_with(L"unencrypt-"); }

bool FailsFor(const Shortage& shortage, const Writes& writes, const std::wstring& name) {
  for (std::size_t i = 0; i < writes.size(); ++i) {
    const bool fits = shortage.RoomFor(static_cast<int>(i) + 1) == FullDisk::kAll;
    if (writes[i] == name && !fits) return true;
  }
  return false;
}

/// What does not reach the disk. A plain copy is needed up to its middle: zeros follow. One is
/// written at once for each reading, before all other files.
FailedWrites FailedBy(const Shortage& shortage, const Writes& writes) {
  FailedWrites failed;
  failed.copy = [shortage](int reading) { return shortage.RoomFor(reading) < 2; };
  failed.ledger = FailsFor(shortage, writes, L"PowerConsumption.json");
  failed.report = FailsFor(shortage, writes, L"Powerlog.xml");
  failed.store = FailsFor(shortage, writes, L"Powerlog.json");
  return failed;
}

/// Days whose energy is gone, or smaller than without the shortage.
struct Losses {
  int gone = 0;
  int smaller = 0;

  void Merge(const Losses& other) {
    gone = std::max(gone, other.gone);
    smaller = std::max(smaller, other.smaller);
  }
};

class FullDiskTest : public WholePassFixture {
 protected:
  Writes WritesOfAPass() {
    const NotebookFolder data(FolderBeforeThePass());
    TestHelper helper(data.Path().c_str());
    const FullDisk enough(data.Path(), [](int) { return FullDisk::kAll; });
    RunPass(helper, data);
    EXPECT_EQ(Describe(data.State()), Describe(undisturbed_));
    return FullDisk::Writes();
  }

  /// Runs the pass and both kinds of next ones, and checks the folder after each.
  void Run(const Shortage& shortage, const Writes& writes) {
    const NotebookFolder data(FolderBeforeThePass());
    TestHelper helper(data.Path().c_str());
    {
      const FullDisk full(data.Path(), [&](int number) { return shortage.RoomFor(number); });
      RunPass(helper, data);
    }
    DayEnergies memory;
    const FolderState left = AfterPass(FolderBeforeThePass(), memory, FailedBy(shortage, writes));
    ASSERT_EQ(Describe(data.State()), Describe(left));
    ExpectSamplesOfUnsavedDays(left);
    EXPECT_TRUE(data.Names(L"unencrypt-*").empty());

    const NotebookFolder copy(data);
    RunPass(helper, data);
    const FolderState next = AfterPass(left, memory);
    ASSERT_EQ(Describe(data.State()), Describe(next)) << "the same process";
    sameProcess_.Merge(LossesOf(next));

    TestHelper other(copy.Path().c_str());
    RunPass(other, copy);
    DayEnergies none;
    const FolderState restarted = AfterPass(left, none);
    ASSERT_EQ(Describe(copy.State()), Describe(restarted)) << "another process";
    newProcess_.Merge(LossesOf(restarted));
    for (const LogRecord& line : log.Records()) {
      EXPECT_EQ(line.level, Standin::LogLevel::kInfo) << line;
    }
    log.Clear();
  }

  /// All shortages that begin with one of these writes.
  void RunAll(const Writes& writes, const std::vector<int>& numbers, const char* file) {
    sameProcess_ = {};
    newProcess_ = {};
    int cases = 0;
    for (const int number : numbers) {
      for (const int quarters :
           AreAllMomentsWanted() ? std::vector<int>{0, 1, 2} : std::vector<int>{0, 2}) {
        for (const bool lasts : {true, false}) {
          SCOPED_TRACE("write " + std::to_string(number) + ", room for quarters: " +
                       std::to_string(quarters) + (lasts ? ", lasting" : ""));
          ASSERT_NO_FATAL_FAILURE(Run({number, quarters, lasts}, writes));
          ++cases;
        }
      }
    }
    std::printf(
        "figures: disk full at %s: %zu writes, %d cases; days gone %d, smaller %d; "
        "in a new process gone %d, smaller %d\n",
        file, numbers.size(), cases, sameProcess_.gone, sameProcess_.smaller, newProcess_.gone,
        newProcess_.smaller);
  }

  Losses LossesOf(const FolderState& folder) const {
    Losses losses;
    for (const auto& [back, energyWh] : *undisturbed_.ledger) {
      const float found = folder.ledger->at(back);
      if (energyWh != 0.0F && found == 0.0F) ++losses.gone;
      if (found != 0.0F && found < energyWh) ++losses.smaller;
    }
    return losses;
  }

  Losses sameProcess_;
  Losses newProcess_;

 private:
  /// Each day with samples still has them, or the ledger on the disk has its energy.
  static void ExpectSamplesOfUnsavedDays(const FolderState& left) {
    for (const int back : FolderBeforeThePass().samples) {
      const bool isBooked = left.ledger && left.ledger->at(back) != 0.0F;
      EXPECT_TRUE(isBooked || left.samples.count(back) != 0) << back;
    }
  }

  static FolderState Undisturbed() {
    DayEnergies memory;
    return AfterPass(FolderBeforeThePass(), memory);
  }

  const FolderState undisturbed_ = Undisturbed();
};

/// The numbers of the writes to files for which `isWanted` holds; without WATTLEAF_ALL_MOMENTS
/// every `step`-th of them.
template <typename IsWanted>
std::vector<int> NumbersOf(const Writes& writes, int step, IsWanted isWanted) {
  if (AreAllMomentsWanted()) step = 1;
  std::vector<int> numbers;
  int count = 0;
  for (std::size_t i = 0; i < writes.size(); ++i) {
    if (isWanted(writes[i]) && count++ % step == 0) numbers.push_back(static_cast<int>(i) + 1);
  }
  return numbers;
}

using FullDiskRankingTest = RankingFixture;

}  // namespace

TEST_F(FullDiskTest, CostsAtMostLinksAcrossMidnightWhenAPlainCopyDoesNotFit) {
  const Writes writes = WritesOfAPass();
  const auto copies = std::count_if(writes.begin(), writes.end(), IsCopy);
  ASSERT_EQ(copies, CopiesOfAPass(FolderBeforeThePass()));
  RunAll(writes, NumbersOf(writes, 39, IsCopy), "plain copies");
  EXPECT_EQ(sameProcess_.gone, 0);
  EXPECT_EQ(sameProcess_.smaller, 1);
}

TEST_F(FullDiskTest, CostsTheLedgerOnlyInANewProcess) {
  const Writes writes = WritesOfAPass();
  const auto isLedger = [](const std::wstring& name) { return name == L"PowerConsumption.json"; };
  RunAll(writes, NumbersOf(writes, 2, isLedger), "the ledger");
  EXPECT_EQ(sameProcess_.gone, 0);
  EXPECT_EQ(sameProcess_.smaller, 0);
  EXPECT_EQ(newProcess_.gone, 188);
}

TEST_F(FullDiskTest, CostsNoDayWhenReportOrStoreDoNotFit) {
  const Writes writes = WritesOfAPass();
  const auto isReport = [](const std::wstring& name) { return name.starts_with(L"Powerlog."); };
  RunAll(writes, NumbersOf(writes, 1, isReport), "report and store");
  EXPECT_EQ(newProcess_.gone, 0);
  EXPECT_EQ(newProcess_.smaller, 0);
}

TEST_F(FullDiskRankingTest, HasNoIconUntilTheNextCommandWritesItAgain) {
  InstallPackage();
  WriteStore({StoreRow("Alder.App", "Meadow", "1")});
  const std::wstring request = folder.Path() + L"?7";
  const std::wstring icon = folder.File(L"Meadow.png");
  for (const int quarters : {0, 2}) {
    {
      const FullDisk full(folder.Path(), [&](int) { return quarters; });
      EXPECT_EQ(Rank(request), LR"([{"Name":"Meadow","Icon":"","Value":100.0}])");
      EXPECT_EQ(FullDisk::Writes(), Writes{L"Meadow.png"});
    }
    EXPECT_EQ(Rank(request),
              LR"([{"Name":"Meadow","Icon":")" + InJson(icon) + LR"(","Value":100.0}])");
    EXPECT_EQ(ReadWholeFile(icon), "the logo");
  }
}
