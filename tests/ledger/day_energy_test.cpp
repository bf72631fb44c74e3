#include "ledger/day_energy.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>

#include "ledger/energy_arithmetic.h"
#include "ledger/fake_days.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace TestSupport;

namespace {

constexpr char kToday[] = "2024-05-06";
constexpr char kDayBefore[] = "2024-05-05";
constexpr char kDayAfter[] = "2024-05-07";

// 36 watts are 3 watt-hours in 300 seconds and 6 in 600.
constexpr float kThree = 3.0F / 0.88F;
constexpr float kSix = 6.0F / 0.88F;

std::string At(const std::string& time, const std::string& power = "36",
               const std::string& type = "PCM_SENSOR") {
  return Sample(std::string(kToday) + "T" + time, power, type);
}

std::string AtDayBefore(const std::string& time, const std::string& power = "36") {
  return Sample(std::string(kDayBefore) + "T" + time, power);
}

std::string AtDayAfter(const std::string& time, const std::string& power = "36") {
  return Sample(std::string(kDayAfter) + "T" + time, power);
}

float EnergyOf(FakeDays days) { return DayEnergyWh(Day(kToday), days.Reader()); }

}  // namespace

TEST(EnergyArithmetic, HasTheConstantsOfTheLedger) {
  EXPECT_EQ(kLargestIntervalSeconds, 600);
  EXPECT_EQ(kSecondsPerHour, 3600.0F);
  EXPECT_EQ(std::bit_cast<std::uint32_t>(kEnergyDivisor), 0x3F6147AEU);
}

TEST(EnergyArithmetic, CountsOneToSixHundredSeconds) {
  struct Row {
    std::int64_t seconds;
    float energyWh;
  };
  for (const Row& row :
       {Row{-1, 0.0F}, Row{0, 0.0F}, Row{1, 0.01F}, Row{600, 6.0F}, Row{601, 0.0F}}) {
    EXPECT_EQ(IntervalEnergyWh(row.seconds, 36.0F), row.energyWh) << row.seconds;
  }
}

TEST(EnergyArithmetic, MultipliesSecondsByWattsAndThenDividesEachRoundedTo32Bits) {
  // 68 * 89.7 / 3600: in double, or with the division first, in two steps or as a multiplication,
  // or with the watts not narrowed, it ends in ...FEA.
  EXPECT_EQ(std::bit_cast<std::uint32_t>(IntervalEnergyWh(68, 89.7F)), 0x3FD8DFE9U);
}

TEST(EnergyArithmetic, NegativeDifferenceContributesNothing) {
  for (const std::int64_t seconds : {-1, -100, -600, -601, -86400}) {
    EXPECT_EQ(IntervalEnergyWh(seconds, 36.0F), 0.0F) << seconds;
    EXPECT_EQ(IntervalEnergyWh(seconds, -36.0F), 0.0F) << seconds;
  }
}

TEST(EnergyArithmetic, NegativePowerContributesNegativeEnergy) {
  EXPECT_EQ(IntervalEnergyWh(100, -36.0F), -1.0F);
}

TEST(EnergyArithmetic, CountsTheLow32Bits) {
  constexpr std::int64_t kTwoToThe32 = 4294967296;
  EXPECT_EQ(IntervalEnergyWh(kTwoToThe32 + 100, 36.0F), 1.0F);
  EXPECT_EQ(IntervalEnergyWh(-kTwoToThe32 + 100, 36.0F), 1.0F);
  EXPECT_EQ(IntervalEnergyWh(kTwoToThe32, 36.0F), 0.0F);
  EXPECT_EQ(IntervalEnergyWh(kTwoToThe32 - 100, 36.0F), 0.0F);
}

TEST(DayEnergy, SkipsTheFirstInterval) {
  const std::string list = List({At("10:00:00"), At("10:05:00"), At("10:10:00"), At("10:15:00")});
  FakeDays days{{kToday, list}};
  const float energyWh = DayEnergyWh(Day(kToday), days.Reader());
  // From 10:05 to 10:10 and from 10:10 to 10:15.
  EXPECT_EQ(energyWh, kSix);
  EXPECT_NEAR(energyWh, 6.818F, 0.0005F);
  EXPECT_EQ(std::bit_cast<std::uint32_t>(energyWh), 0x40DA2E8CU);
}

TEST(DayEnergy, FirstIntervalIsBookedByNobodyWhateverItsPower) {
  EXPECT_EQ(EnergyOf({{kToday, List({At("10:00:00", "5000"), At("10:05:00"), At("10:10:00")})}}),
            kThree);
}

TEST(DayEnergy, GapOf601SecondsIsNotBooked) {
  EXPECT_EQ(EnergyOf({{kToday, List({At("09:00:00"), At("10:00:00"), At("10:10:01")})}}), 0.0F);
}

TEST(DayEnergy, IntervalOf600SecondsIsBooked) {
  EXPECT_EQ(EnergyOf({{kToday, List({At("09:00:00"), At("10:00:00"), At("10:10:00")})}}), kSix);
}

TEST(DayEnergy, SamplesAtTheSameTimeContributeNothing) {
  EXPECT_EQ(EnergyOf({{kToday, List({At("09:00:00"), At("10:00:00"), At("10:00:00")})}}), 0.0F);
}

TEST(DayEnergy, SamplesAreNotSorted) {
  EXPECT_EQ(EnergyOf({{kToday, List({At("09:00:00"), At("10:05:00"), At("10:00:00")})}}), 0.0F);
}

TEST(DayEnergy, AnotherTypeLosesItsOwnIntervalAndEndsTheOneBeforeIt) {
  EXPECT_EQ(
      EnergyOf({{kToday, List({At("09:00:00"), At("10:00:00"), At("10:05:00", "5000", "PCM_SCREEN"),
                               At("10:10:00"), At("10:15:00")})}}),
      kSix);
}

TEST(DayEnergy, CountsExactlyTwoTypes) {
  struct Row {
    const char* type;
    float energyWh;
  };
  for (const Row& row :
       {Row{"PCM_SENSOR", kThree}, Row{"PCM_CHARGER", kThree}, Row{"PCM_BATTERY", 0.0F},
        Row{"pcm_sensor", 0.0F}, Row{"PCM_SENSOR ", 0.0F}, Row{"PCM_SENSOR2", 0.0F},
        Row{"PCM_CHARGE", 0.0F}, Row{"PCM_SENSOR\\u0000", 0.0F}, Row{"", 0.0F}}) {
    EXPECT_EQ(EnergyOf({{kToday,
                         List({At("09:00:00"), At("10:00:00", "36", row.type), At("10:05:00")})}}),
              row.energyWh)
        << row.type;
  }
}

TEST(DayEnergy, TakesItsStepsIn32BitFloat) {
  // 17.3 W for 61 s, 23.7 W for 127 s, 9.1 W for 299 s and 41.9 W for 599 s. The same in double, or
  // with the divisions drawn together, ends in ...804 instead of ...805.
  const float energyWh =
      EnergyOf({{kToday, List({At("09:00:00"), At("10:00:00", "17.3"), At("10:01:01", "23.7"),
                               At("10:03:08", "9.1"), At("10:08:07", "41.9"), At("10:18:06")})}});
  EXPECT_EQ(std::bit_cast<std::uint32_t>(energyWh), 0x41210805U);
}

TEST(DayEnergy, AddsInOrderInFloatAndDividesTheSumOnce) {
  // 118 s at 108.0 W, 362 at 11.6, 444 at 70.3, 359 at 54.5, 254 at 87.3 and 473 at 62.3. Another
  // result: the sum or the contributions in double, the sum from the end, a division of each
  // contribution by 0.88, one division by 3600 at the end, 0.88 in double, its reciprocal, or the
  // powers not narrowed.
  const float energyWh =
      EnergyOf({{kToday, List({At("09:00:00"), At("10:00:00", "108.0"), At("10:01:58", "11.6"),
                               At("10:08:00", "70.3"), At("10:15:24", "54.5"),
                               At("10:21:23", "87.3"), At("10:25:37", "62.3"), At("10:33:30")})}});
  EXPECT_EQ(std::bit_cast<std::uint32_t>(energyWh), 0x4216B64FU);
}

TEST(DayEnergy, AddsTheLinkToTheDayBeforeFirst) {
  // 600 seconds at 100,663,296 watts are 2 to the 24, to which 32 bits can add no single watt-hour;
  // from the end the sum would be two more.
  const std::string strong = AtDayBefore("23:55:00", "100663296");
  EXPECT_EQ(
      EnergyOf({{kDayBefore, List({strong})},
                {kToday, List({At("00:05:00"), At("12:00:00"), At("12:01:40"), At("23:59:00")})},
                {kDayAfter, List({AtDayAfter("00:00:40")})}}),
      16777216.0F / 0.88F);
}

TEST(DayEnergy, NegativePowerMakesANegativeDay) {
  EXPECT_EQ(EnergyOf({{kToday, List({At("09:00:00"), At("10:00:00", "-36"), At("10:05:00")})}}),
            -kThree);
  EXPECT_EQ(EnergyOf({{kToday, List({At("09:00:00"), At("10:00:00", "-72"), At("10:05:00"),
                                     At("10:10:00")})}}),
            -kThree);
}

TEST(DayEnergy, StepBackInTimeContributesNothingAndTheNextIntervalCounts) {
  EXPECT_EQ(
      EnergyOf({{kToday, List({At("09:00:00"), At("10:05:00"), At("10:00:00"), At("10:05:00")})}}),
      kThree);
}

TEST(DayEnergy, LinkToTheDayBeforeTakesThePowerOfTheEarlierSample) {
  EXPECT_EQ(EnergyOf({{kDayBefore,
                       List({AtDayBefore("23:50:00", "9999"), AtDayBefore("23:58:00", "72")})},
                      {kToday, List({At("00:00:30", "9999"), At("12:00:00", "9999")})}}),
            3.0F / 0.88F);
}

TEST(DayEnergy, LinkToTheDayAfterTakesThePowerOfTheLaterSample) {
  EXPECT_EQ(
      EnergyOf({{kToday, List({At("12:00:00", "9999"), At("23:59:30", "9999")})},
                {kDayAfter, List({AtDayAfter("00:02:00", "72"), AtDayAfter("00:07:00", "9999")})}}),
      3.0F / 0.88F);
}

TEST(DayEnergy, LinksIgnoreTheTypeOfTheNeighboursSample) {
  const std::string other = Sample("2024-05-05T23:58:00", "36", "PCM_BATTERY");
  EXPECT_EQ(EnergyOf({{kDayBefore, List({other})}, {kToday, List({At("00:03:00")})}}), kThree);
}

TEST(DayEnergy, GapAcrossMidnightCountsTwice) {
  FakeDays days{{kDayBefore, List({AtDayBefore("23:50:00"), AtDayBefore("23:58:00", "30")})},
                {kToday, List({At("00:02:00", "60"), At("12:00:00")})}};
  // 240 seconds, each time divided by 0.88.
  EXPECT_EQ(DayEnergyWh(Day(kToday), days.Reader()), 2.0F / 0.88F);
  EXPECT_EQ(DayEnergyWh(Day(kDayBefore), days.Reader()), 4.0F / 0.88F);
}

TEST(DayEnergy, SingleSampleGetsOnlyItsLinkBackwards) {
  FakeDays days{{kDayBefore, List({AtDayBefore("23:58:00", "36")})},
                {kToday, List({At("00:03:00", "9999")})},
                {kDayAfter, List({AtDayAfter("00:00:00", "9999")})}};
  EXPECT_EQ(DayEnergyWh(Day(kToday), days.Reader()), kThree);
  EXPECT_EQ(days.Asked(), (std::vector<std::string>{kToday, kDayBefore}));
}

TEST(DayEnergy, ReadsTheDayThenTheDayBeforeThenTheDayAfter) {
  FakeDays days{{kToday, List({At("10:00:00"), At("10:05:00")})}};
  DayEnergyWh(Day(kToday), days.Reader());
  EXPECT_EQ(days.Asked(), (std::vector<std::string>{kToday, kDayBefore, kDayAfter}));
}

TEST(DayEnergy, EdgesOfAnotherTypeHaveNoLinks) {
  FakeDays days{{kDayBefore, List({AtDayBefore("23:59:00")})},
                {kToday, List({At("00:00:00", "36", "X"), At("23:59:00", "36", "X")})},
                {kDayAfter, List({AtDayAfter("00:00:00")})}};
  EXPECT_EQ(DayEnergyWh(Day(kToday), days.Reader()), 0.0F);
  EXPECT_EQ(days.Asked(), (std::vector<std::string>{kToday}));
}
