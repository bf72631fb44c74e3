#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "base/scratch_folder.h"
#include "base/zone_days.h"
#include "ledger/fake_days.h"
#include "ledger/ledger_file.h"
#include "ledger/power_ledger.h"

// The ledger around the days on which clocks change. Each step moves by 86400 seconds and restores
// the hour. The skipped and doubled days that follow from this are deliberate.

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace TestSupport;

namespace {

using Dates = std::vector<std::string>;

/// The dates of days relative to the spring and to the autumn change, in order.
Dates SpringDates(const std::vector<int>& plusDays) {
  Dates dates;
  for (const int plus : plusDays) dates.push_back(DateOf(Spring(plus)));
  return dates;
}

Dates AutumnDates(const std::vector<int>& plusDays) {
  Dates dates;
  for (const int plus : plusDays) dates.push_back(DateOf(Autumn(plus)));
  return dates;
}

struct Pass {
  Dates computed;
  Dates discarded;
};

/// A pass on `today` in which every day has an energy of one watt-hour.
Pass RunPass(const DateTime& today, PowerLedger& ledger) {
  Pass pass;
  UpdateLedger(today, ledger,
               {[&](const DateTime& day) {
                  pass.computed.push_back(DateOf(day));
                  return 1.0F;
                },
                [&](const DateTime& day) { pass.discarded.push_back(DateOf(day)); }});
  return pass;
}

Pass RunPass(const DateTime& today) {
  PowerLedger ledger;
  return RunPass(today, ledger);
}

Dates First(const Dates& dates, std::size_t count) {
  return {dates.begin(), dates.begin() + static_cast<std::ptrdiff_t>(count)};
}

/// The ledger that is loaded from a file with one entry.
PowerLedger Loaded(const std::string& date, const std::string& value, const DateTime& today) {
  const ScratchFolder folder;
  WriteBytes(folder.File("ledger.json"), R"([{"Key":")" + date + R"(","Value":)" + value + "}]");
  PowerLedger ledger;
  LoadLedger(folder.File("ledger.json").wstring(), OldestDay(today), ledger);
  return ledger;
}

std::vector<float> ValuesOf(const PowerLedger& ledger, const std::string& date) {
  std::vector<float> values;
  for (const auto& [day, energyWh] : ledger) {
    if (DateOf(day) == date) values.push_back(energyWh);
  }
  return values;
}

}  // namespace

TEST(UpdateLedger, SkipsTheDayOnWhichClocksGoForward) {
  EXPECT_EQ(First(RunPass(TodayAt(Spring(2))).computed, 4), SpringDates({2, 1, -1, -2}));
}

TEST(UpdateLedger, SkipsYesterdayWhenClocksGoForwardToday) {
  EXPECT_EQ(First(RunPass(TodayAt(Spring(0))).computed, 3), SpringDates({0, -2, -3}));
}

TEST(UpdateLedger, VisitsEveryDayWhenClocksGoBack) {
  EXPECT_EQ(First(RunPass(TodayAt(Autumn(2))).computed, 5), AutumnDates({2, 1, 0, -1, -2}));
  EXPECT_EQ(First(RunPass(TodayAt(Autumn(0))).computed, 3), AutumnDates({0, -1, -2}));
}

TEST(UpdateLedger, KeepsTheSamplesOfTheDayThatOneStepBackReaches) {
  // One step back from the day after the change reaches the day before the change, which therefore
  // keeps its samples.
  const Pass pass = RunPass(TodayAt(Spring(1)));
  EXPECT_EQ(First(pass.computed, 3), SpringDates({1, -1, -2}));
  EXPECT_EQ(First(pass.discarded, 1), SpringDates({-2}));
}

TEST(UpdateLedger, AddsASecondKeyForTodayOnTheSpringChangeDay) {
  const DateTime today = TodayAt(Spring(0));
  const std::string date = DateOf(today);
  PowerLedger ledger = Loaded(date, "12.5", today);
  RunPass(today, ledger);
  // Midnight with the summer time flag comes first: it is one hour before the real midnight.
  EXPECT_EQ(ValuesOf(ledger, date), (std::vector<float>{1.0F, 12.5F}));
}

TEST(UpdateLedger, AddsASecondKeyForTodayOnTheAutumnChangeDay) {
  const DateTime today = TodayAt(Autumn(0));
  const std::string date = DateOf(today);
  PowerLedger ledger = Loaded(date, "12.5", today);
  RunPass(today, ledger);
  // Midnight without the summer time flag comes second: it is one hour after the real midnight.
  EXPECT_EQ(ValuesOf(ledger, date), (std::vector<float>{12.5F, 1.0F}));
}

TEST(UpdateLedger, ReplacesTheLoadedEntryOfTodayOnOtherDays) {
  for (const DateTime& now : {Spring(-1), Spring(1), Autumn(-1), Autumn(1)}) {
    const DateTime today = TodayAt(now);
    PowerLedger ledger = Loaded(DateOf(today), "12.5", today);
    RunPass(today, ledger);
    EXPECT_EQ(ValuesOf(ledger, DateOf(today)), std::vector<float>{1.0F}) << DateOf(today);
  }
}

TEST(LoadLedger, KeepsTheLaterOfTwoEntriesOfOneDate) {
  const DateTime today = TodayAt(Spring(0));
  const std::string date = DateOf(today);
  PowerLedger ledger = Loaded(date, "12.5", today);
  RunPass(today, ledger);
  PowerLedger next;
  const ScratchFolder folder;
  ASSERT_TRUE(SaveLedger(folder.File("ledger.json").wstring(), ledger));
  LoadLedger(folder.File("ledger.json").wstring(), OldestDay(today), next);
  EXPECT_EQ(ValuesOf(next, date), std::vector<float>{12.5F});
}

TEST(UpdateLedger, VisitsAtMost211DaysAllYearRound) {
  for (int day = 1; day <= 365; day += 3) {
    const DateTime today = TodayAt(LocalIn2025(1, day, 12));
    SCOPED_TRACE(DateOf(today));
    const Pass pass = RunPass(today);
    EXPECT_LE(pass.computed.size(), 211U);
    EXPECT_GE(pass.computed.size(), 209U);
    EXPECT_EQ(std::set<std::string>(pass.computed.begin(), pass.computed.end()).size(),
              pass.computed.size());
    EXPECT_EQ(pass.computed.back(), DateOf(OldestDay(today)));
  }
}

TEST(UpdateLedger, StopsBeforeAnOldestDayOnWhichClocksGoBack) {
  // 211 days after the autumn change of 2024. The limit is that day's midnight in winter time,
  // while the steps would reach it in summer time, which is one hour earlier.
  const bool isBerlin = std::string(ChangesOfThisZone().zone) == "Europe/Berlin";
  const DateTime today = TodayAt(isBerlin ? LocalIn2025(5, 26, 12) : LocalIn2025(6, 2, 12));
  EXPECT_EQ(DateOf(OldestDay(today)), isBerlin ? "2024-10-27" : "2024-11-03");
  EXPECT_EQ(RunPass(today).computed.back(), isBerlin ? "2024-10-28" : "2024-11-04");
}

TEST(OldestDay, Is211DaysBackInWinterForASummerDay) {
  // 210 * 86400 seconds before midnight in summer time it is 23:00 in winter time.
  EXPECT_EQ(DateOf(OldestDay(TodayAt(LocalIn2025(7, 15, 12)))), "2024-12-16");
  EXPECT_EQ(DateOf(OldestDay(TodayAt(LocalIn2025(2, 15, 12)))), "2024-07-20");
}

TEST(AverageDayEnergy, SkipsTheSpringChangeDayAndReachesOneDayFurther) {
  const DateTime today = TodayAt(Spring(3));
  const auto averageOf = [&](int plusDays) {
    return AverageDayEnergyWh(today, {{Day(DateOf(Spring(plusDays))), 7.0F}});
  };
  EXPECT_EQ(averageOf(0), 0.0F);
  EXPECT_EQ(averageOf(1), 1.0F);
  EXPECT_EQ(averageOf(-1), 1.0F);
  EXPECT_EQ(averageOf(-4), 1.0F);
  EXPECT_EQ(averageOf(-5), 0.0F);
}
