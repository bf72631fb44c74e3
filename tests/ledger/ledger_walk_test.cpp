#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "base/local_calendar.h"
#include "ledger/fake_days.h"
#include "ledger/power_ledger.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace TestSupport;

namespace {

using Dates = std::vector<std::string>;

constexpr char kToday[] = "2024-08-07";

/// Records what a walk asks for; each day's energy comes from `energies`, 0.0 where it has none.
struct FakeWalk {
  std::map<std::string, float> energies{};
  Dates workedOut{};
  Dates discarded{};
  /// Both, in their order.
  Dates calls{};
  PowerLedger ledger{};

  void From(const DateTime& today) {
    UpdateLedger(today, ledger,
                 {[this](const DateTime& day) {
                    workedOut.push_back(DateOf(day));
                    calls.push_back("energy of " + DateOf(day));
                    const auto found = energies.find(workedOut.back());
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

/// A ledger in which all 211 days before and with today hold `energyWh`.
PowerLedger FullLedger(float energyWh) {
  PowerLedger ledger{};
  for (int back = 0; back <= 210; ++back) {
    ledger[ShiftKeepingHour(Day(kToday), -back * kSecondsPerDay)] = energyWh;
  }
  return ledger;
}

}  // namespace

TEST(UpdateLedger, WalksFromTodayOver211Days) {
  FakeWalk walk;
  walk.From(Day(kToday));
  ASSERT_EQ(walk.workedOut.size(), 211U);
  EXPECT_EQ(walk.workedOut[0], kToday);
  EXPECT_EQ(walk.workedOut[1], "2024-08-06");
  EXPECT_EQ(walk.workedOut[210], "2024-01-10");
  EXPECT_EQ(walk.ledger.size(), 211U);
}

TEST(UpdateLedger, AbsentDayIsWorkedOutAndItsSamplesDiscarded) {
  FakeWalk walk{.energies = {{"2024-08-04", 12.5F}}};
  walk.From(Day(kToday));
  EXPECT_EQ(walk.ValueOf("2024-08-04"), 12.5F);
  EXPECT_EQ(walk.discarded, Dates{"2024-08-04"});
}

TEST(UpdateLedger, DiscardsTheSamplesOfADayBeforeTheNextOneIsWorkedOut) {
  FakeWalk walk{.energies = {{"2024-08-05", 3.0F}, {"2024-08-04", 12.5F}}};
  walk.From(Day(kToday));
  walk.calls.resize(7);
  EXPECT_EQ(walk.calls, (Dates{"energy of 2024-08-07", "energy of 2024-08-06",
                               "energy of 2024-08-05", "discard 2024-08-05", "energy of 2024-08-04",
                               "discard 2024-08-04", "energy of 2024-08-03"}));
}

TEST(UpdateLedger, NegativeDayIsBookedAndItsSamplesDiscarded) {
  FakeWalk walk{.energies = {{"2024-08-04", -12.5F}}};
  walk.From(Day(kToday));
  EXPECT_EQ(walk.ValueOf("2024-08-04"), -12.5F);
  EXPECT_EQ(walk.discarded, Dates{"2024-08-04"});
}

TEST(UpdateLedger, DayAtZeroIsTriedAgainAtEachPass) {
  FakeWalk walk{.ledger = FullLedger(0.0F)};
  walk.From(Day(kToday));
  EXPECT_EQ(walk.workedOut.size(), 211U);
  EXPECT_EQ(walk.discarded, Dates());
}

TEST(UpdateLedger, BookedDayIsNotWorkedOutAndKeepsItsSamples) {
  FakeWalk walk{.energies = {{"2024-08-04", 99.0F}}, .ledger = FullLedger(12.5F)};
  walk.From(Day(kToday));
  EXPECT_EQ(walk.workedOut, Dates{kToday});
  EXPECT_EQ(walk.ValueOf("2024-08-04"), 12.5F);
  EXPECT_EQ(walk.discarded, Dates());
}

TEST(UpdateLedger, NegativeValueIsFinalToo) {
  FakeWalk walk{.ledger = FullLedger(-1.0F)};
  walk.From(Day(kToday));
  EXPECT_EQ(walk.workedOut, Dates{kToday});
}

TEST(UpdateLedger, TodayIsWorkedOutAtEveryPass) {
  FakeWalk walk{.energies = {{kToday, 7.0F}}, .ledger = FullLedger(12.5F)};
  walk.From(Day(kToday));
  EXPECT_EQ(walk.ValueOf(kToday), 7.0F);
}

TEST(UpdateLedger, TodayAndYesterdayKeepTheirSamples) {
  FakeWalk walk{.energies = {{kToday, 1.0F}, {"2024-08-06", 2.0F}, {"2024-08-05", 3.0F}}};
  walk.From(Day(kToday));
  EXPECT_EQ(walk.ValueOf(kToday), 1.0F);
  EXPECT_EQ(walk.ValueOf("2024-08-06"), 2.0F);
  EXPECT_EQ(walk.discarded, Dates{"2024-08-05"});
}

TEST(UpdateLedger, OldestDayDroppedByTheLoadIsWorkedOutAgain) {
  FakeWalk walk{.energies = {{"2024-01-10", 4.0F}}};
  LoadLedger(*Document(R"([{"Key":"2024-01-10","Value":12.5}])"), OldestDay(Day(kToday)),
             walk.ledger);
  ASSERT_TRUE(walk.ledger.empty());
  walk.From(Day(kToday));
  EXPECT_EQ(walk.ValueOf("2024-01-10"), 4.0F);
}

TEST(UpdateLedger, EntriesBehindTheOldestDayStayInTheMap) {
  FakeWalk walk{.ledger = {{Day("2023-12-24"), 5.0F}}};
  walk.From(Day(kToday));
  EXPECT_EQ(walk.ValueOf("2023-12-24"), 5.0F);
  EXPECT_EQ(walk.ledger.size(), 212U);
}

TEST(UpdateLedger, EnergyThatIsNotFiniteIsBookedAsZero) {
  FakeWalk walk{.energies = {{kToday, std::numeric_limits<float>::infinity()},
                             {"2024-08-01", std::numeric_limits<float>::quiet_NaN()}}};
  walk.From(Day(kToday));
  EXPECT_EQ(walk.ValueOf(kToday), 0.0F);
  EXPECT_EQ(walk.ValueOf("2024-08-01"), 0.0F);
  EXPECT_EQ(walk.discarded, Dates());
}

TEST(UpdateLedger, ClockIn1970EndsAtTheFirstDayOfTheCalendar) {
  FakeWalk walk;
  walk.From(Day("1970-01-03"));
  EXPECT_EQ(walk.workedOut, (Dates{"1970-01-03", "1970-01-02", "1970-01-01"}));
}

TEST(UpdateLedger, ClockOutsideTheCalendarWalksNowhere) {
  FakeWalk walk;
  walk.From(LocalTimeOf(-1));
  EXPECT_EQ(walk.workedOut, Dates());
  EXPECT_TRUE(walk.ledger.empty());
}
