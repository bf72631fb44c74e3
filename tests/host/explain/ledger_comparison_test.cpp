#include "explain/ledger_comparison.h"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <string>

#include "ledger/fake_days.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace WattleafHost;
using TestSupport::Day;

namespace {

constexpr float kEnergyWh = 6.5F;

/// A day with samples and both neighbours.
DayExplanation Known(float energyWh) {
  DayExplanation day;
  day.hasList = true;
  day.samples.resize(3);
  day.intervals.resize(4);
  day.energyWh = energyWh;
  return day;
}

DayExplanation WithoutNeighbour() {
  DayExplanation day = Known(kEnergyWh);
  day.intervals[0].booking = Booking::kNoNeighbour;
  return day;
}

LedgerRelation Compare(const std::string& date, std::optional<float> booked,
                       const DayExplanation& day, LedgerState state = LedgerState::kRead) {
  return CompareWithLedger(Day(date), Day("2024-11-22"), state, booked, day);
}

}  // namespace

TEST(CompareWithLedger, NamesTheReasonOfEachDifference) {
  const DayExplanation known = Known(kEnergyWh);
  const DayExplanation none;
  EXPECT_EQ(Compare("2024-11-20", kEnergyWh, known), LedgerRelation::kEqual);
  EXPECT_EQ(Compare("2024-11-22", kEnergyWh, known), LedgerRelation::kEqual);
  EXPECT_EQ(Compare("2024-11-22", 3.0F, known), LedgerRelation::kToday);
  EXPECT_EQ(Compare("2024-11-21", 3.0F, known), LedgerRelation::kFinal);
  EXPECT_EQ(Compare("2024-11-21", 3.0F, WithoutNeighbour()), LedgerRelation::kNeighbourGone);
  EXPECT_EQ(Compare("2024-11-18", 3.0F, none), LedgerRelation::kSamplesGone);
  EXPECT_EQ(Compare("2024-11-18", std::nullopt, none), LedgerRelation::kNothingToBook);
  EXPECT_EQ(Compare("2024-11-18", 0.0F, none), LedgerRelation::kNothingToBook);
  EXPECT_EQ(Compare("2024-11-18", 0.0F, known), LedgerRelation::kNotBookedYet);
  EXPECT_EQ(Compare("2024-11-18", std::nullopt, known), LedgerRelation::kNotBookedYet);
}

TEST(CompareWithLedger, ComparesTheLastBit) {
  EXPECT_EQ(Compare("2024-11-20", std::nextafter(kEnergyWh, 7.0F), Known(kEnergyWh)),
            LedgerRelation::kFinal);
}

TEST(CompareWithLedger, NamesDaysOutsideTheLedger) {
  const DayExplanation known = Known(kEnergyWh);
  EXPECT_EQ(Compare("2024-11-23", kEnergyWh, known), LedgerRelation::kFuture);
  // 210 days before 2024-11-22 is 2024-04-26.
  EXPECT_EQ(Compare("2024-04-26", kEnergyWh, known), LedgerRelation::kEqual);
  EXPECT_EQ(Compare("2024-04-25", kEnergyWh, known), LedgerRelation::kBeyondReach);
}

TEST(CompareWithLedger, NamesALedgerThatCannotBeRead) {
  for (const LedgerState state :
       {LedgerState::kAbsent, LedgerState::kLeftOut, LedgerState::kUnreadable}) {
    EXPECT_EQ(Compare("2024-11-20", std::nullopt, Known(kEnergyWh), state),
              LedgerRelation::kNoLedger);
    EXPECT_STRNE(LedgerStateText(state), "");
  }
  EXPECT_STREQ(LedgerStateText(LedgerState::kRead), "");
}

TEST(LedgerRelationText, SaysWhatTheSupporterNeeds) {
  EXPECT_STREQ(LedgerRelationText(LedgerRelation::kNotBookedYet),
               "nothing is booked yet; the next pass books this value");
  EXPECT_STREQ(LedgerRelationText(LedgerRelation::kFinal),
               "booked earlier and final; samples that came after that pass are not added");
  EXPECT_STREQ(LedgerRelationText(LedgerRelation::kBeyondReach),
               "the day is older than the 210 days of the ledger");
}
