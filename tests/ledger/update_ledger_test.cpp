#include "ledger/power_ledger.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "base/local_calendar.h"
#include "base/scratch_folder.h"
#include "ledger/fake_days.h"
#include "ledger/ledger_file.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace TestSupport;

namespace {

using Dates = std::vector<std::string>;

constexpr char kToday[] = "2024-08-07";

/// Runs UpdateLedger and records its calls. The energy of a day comes from `energies`; it is 0.0
/// without an entry.
struct FakeDaysOfLedger {
  std::map<std::string, float> energies{};
  Dates computed{};
  Dates discarded{};
  /// Both kinds of calls in one list.
  Dates calls{};
  PowerLedger ledger{};

  void UpdateAt(const DateTime& today) {
    UpdateLedger(today, ledger,
                 {[this](const DateTime& day) {
                    computed.push_back(DateOf(day));
                    calls.push_back("energy of " + DateOf(day));
                    const auto found = energies.find(computed.back());
                    return found != energies.end() ? found->second : 0.0F;
                  },
                  [this](const DateTime& day) {
                    discarded.push_back(DateOf(day));
                    calls.push_back("discard " + DateOf(day));
                  }});
  }

  float ValueOf(const std::string& date) const {
    const auto found = ledger.find(Day(date));
    return found != ledger.end() ? found->second : -1.0F;
  }
};

/// A ledger in which today and the 210 days before it hold `energyWh`.
PowerLedger FullLedger(float energyWh) {
  PowerLedger ledger{};
  for (int back = 0; back <= 210; ++back) {
    ledger[ShiftKeepingHour(Day(kToday), -back * kSecondsPerDay)] = energyWh;
  }
  return ledger;
}

}  // namespace

TEST(OldestDay, Is210DaysBack) {
  EXPECT_EQ(kRetentionSeconds, 18144000);
  EXPECT_EQ(DateOf(OldestDay(Day("2024-08-07"))), "2024-01-10");
}

TEST(UpdateLedger, Visits211DaysBackFromToday) {
  FakeDaysOfLedger days;
  days.UpdateAt(Day(kToday));
  ASSERT_EQ(days.computed.size(), 211U);
  EXPECT_EQ(days.computed[0], kToday);
  EXPECT_EQ(days.computed[1], "2024-08-06");
  EXPECT_EQ(days.computed[210], "2024-01-10");
  EXPECT_EQ(days.ledger.size(), 211U);
}

TEST(UpdateLedger, ComputesAMissingDayAndDiscardsItsSamples) {
  FakeDaysOfLedger days{.energies = {{"2024-08-04", 12.5F}}};
  days.UpdateAt(Day(kToday));
  EXPECT_EQ(days.ValueOf("2024-08-04"), 12.5F);
  EXPECT_EQ(days.discarded, Dates{"2024-08-04"});
}

TEST(UpdateLedger, DiscardsTheSamplesOfADayBeforeComputingTheNext) {
  FakeDaysOfLedger days{.energies = {{"2024-08-05", 3.0F}, {"2024-08-04", 12.5F}}};
  days.UpdateAt(Day(kToday));
  days.calls.resize(7);
  EXPECT_EQ(days.calls, (Dates{"energy of 2024-08-07", "energy of 2024-08-06",
                               "energy of 2024-08-05", "discard 2024-08-05", "energy of 2024-08-04",
                               "discard 2024-08-04", "energy of 2024-08-03"}));
}

TEST(UpdateLedger, BooksANegativeDayAndDiscardsItsSamples) {
  FakeDaysOfLedger days{.energies = {{"2024-08-04", -12.5F}}};
  days.UpdateAt(Day(kToday));
  EXPECT_EQ(days.ValueOf("2024-08-04"), -12.5F);
  EXPECT_EQ(days.discarded, Dates{"2024-08-04"});
}

TEST(UpdateLedger, ComputesADayAtZeroAgainAtEachPass) {
  FakeDaysOfLedger days{.ledger = FullLedger(0.0F)};
  days.UpdateAt(Day(kToday));
  EXPECT_EQ(days.computed.size(), 211U);
  EXPECT_EQ(days.discarded, Dates());
}

TEST(UpdateLedger, DoesNotComputeABookedDayAndKeepsItsSamples) {
  FakeDaysOfLedger days{.energies = {{"2024-08-04", 99.0F}}, .ledger = FullLedger(12.5F)};
  days.UpdateAt(Day(kToday));
  EXPECT_EQ(days.computed, Dates{kToday});
  EXPECT_EQ(days.ValueOf("2024-08-04"), 12.5F);
  EXPECT_EQ(days.discarded, Dates());
}

TEST(UpdateLedger, DoesNotComputeADayWithANegativeValueAgain) {
  FakeDaysOfLedger days{.ledger = FullLedger(-1.0F)};
  days.UpdateAt(Day(kToday));
  EXPECT_EQ(days.computed, Dates{kToday});
}

TEST(UpdateLedger, ComputesTodayAtEveryPass) {
  FakeDaysOfLedger days{.energies = {{kToday, 7.0F}}, .ledger = FullLedger(12.5F)};
  days.UpdateAt(Day(kToday));
  EXPECT_EQ(days.ValueOf(kToday), 7.0F);
}

TEST(UpdateLedger, KeepsTheSamplesOfTodayAndYesterday) {
  FakeDaysOfLedger days{.energies = {{kToday, 1.0F}, {"2024-08-06", 2.0F}, {"2024-08-05", 3.0F}}};
  days.UpdateAt(Day(kToday));
  EXPECT_EQ(days.ValueOf(kToday), 1.0F);
  EXPECT_EQ(days.ValueOf("2024-08-06"), 2.0F);
  EXPECT_EQ(days.discarded, Dates{"2024-08-05"});
}

TEST(UpdateLedger, ComputesTheOldestDayAgainThatTheLoadDropped) {
  FakeDaysOfLedger days{.energies = {{"2024-01-10", 4.0F}}};
  const ScratchFolder folder;
  WriteBytes(folder.File("ledger.json"), R"([{"Key":"2024-01-10","Value":12.5}])");
  LoadLedger(folder.File("ledger.json").wstring(), OldestDay(Day(kToday)), days.ledger);
  ASSERT_TRUE(days.ledger.empty());
  days.UpdateAt(Day(kToday));
  EXPECT_EQ(days.ValueOf("2024-01-10"), 4.0F);
}

TEST(UpdateLedger, KeepsEntriesBeforeTheOldestDayInTheMap) {
  FakeDaysOfLedger days{.ledger = {{Day("2023-12-24"), 5.0F}}};
  days.UpdateAt(Day(kToday));
  EXPECT_EQ(days.ValueOf("2023-12-24"), 5.0F);
  EXPECT_EQ(days.ledger.size(), 212U);
}

TEST(UpdateLedger, BooksEnergyThatIsNotFiniteAsZero) {
  FakeDaysOfLedger days{.energies = {{kToday, std::numeric_limits<float>::infinity()},
                                     {"2024-08-01", std::numeric_limits<float>::quiet_NaN()}}};
  days.UpdateAt(Day(kToday));
  EXPECT_EQ(days.ValueOf(kToday), 0.0F);
  EXPECT_EQ(days.ValueOf("2024-08-01"), 0.0F);
  EXPECT_EQ(days.discarded, Dates());
}

TEST(UpdateLedger, StopsAtTheFirstDayOfTheCalendar) {
  FakeDaysOfLedger days;
  days.UpdateAt(Day("1970-01-03"));
  EXPECT_EQ(days.computed, (Dates{"1970-01-03", "1970-01-02", "1970-01-01"}));
}

TEST(UpdateLedger, VisitsNoDayForAClockOutsideTheCalendar) {
  FakeDaysOfLedger days;
  days.UpdateAt(LocalTimeOf(-1));
  EXPECT_EQ(days.computed, Dates());
  EXPECT_TRUE(days.ledger.empty());
}
