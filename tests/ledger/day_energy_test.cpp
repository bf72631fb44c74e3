#include "ledger/day_energy.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>

#include "ledger/fake_days.h"
#include "ledger/sample_energy.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace TestSupport;

namespace {

constexpr char kToday[] = "2024-05-06";
constexpr char kDayBefore[] = "2024-05-05";
constexpr char kDayAfter[] = "2024-05-07";

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

float EnergyOf(FakeDays days) { return DayEnergyWh(Day(kToday), days.Summaries()); }

}  // namespace

TEST(DayEnergy, SkipsTheFirstInterval) {
  const std::string list = List({At("10:00:00"), At("10:05:00"), At("10:10:00"), At("10:15:00")});
  FakeDays days{{kToday, list}};
  const float energyWh = DayEnergyWh(Day(kToday), days.Summaries());
  // From 10:05 to 10:10 and from 10:10 to 10:15.
  EXPECT_EQ(energyWh, kWhOf600Seconds);
  EXPECT_NEAR(energyWh, 6.818F, 0.0005F);
  EXPECT_EQ(std::bit_cast<std::uint32_t>(energyWh), 0x40DA2E8CU);
}

TEST(DayEnergy, SkipsTheFirstIntervalAtAnyPower) {
  EXPECT_EQ(EnergyOf({{kToday, List({At("10:00:00", "5000"), At("10:05:00"), At("10:10:00")})}}),
            kWhOf300Seconds);
}

TEST(DayEnergy, DoesNotBookAGapOf601Seconds) {
  EXPECT_EQ(EnergyOf({{kToday, List({At("09:00:00"), At("10:00:00"), At("10:10:01")})}}), 0.0F);
}

TEST(DayEnergy, BooksAnIntervalOf600Seconds) {
  EXPECT_EQ(EnergyOf({{kToday, List({At("09:00:00"), At("10:00:00"), At("10:10:00")})}}),
            kWhOf600Seconds);
}

TEST(DayEnergy, BooksNothingBetweenSamplesAtTheSameTime) {
  EXPECT_EQ(EnergyOf({{kToday, List({At("09:00:00"), At("10:00:00"), At("10:00:00")})}}), 0.0F);
}

TEST(DayEnergy, DoesNotSortTheSamples) {
  EXPECT_EQ(EnergyOf({{kToday, List({At("09:00:00"), At("10:05:00"), At("10:00:00")})}}), 0.0F);
}

TEST(DayEnergy, SampleOfAnotherTypeEndsAnIntervalAndStartsNone) {
  EXPECT_EQ(
      EnergyOf({{kToday, List({At("09:00:00"), At("10:00:00"), At("10:05:00", "5000", "PCM_SCREEN"),
                               At("10:10:00"), At("10:15:00")})}}),
      kWhOf600Seconds);
}

TEST(DayEnergy, CountsExactlyTwoTypesOfSamples) {
  struct Row {
    const char* type;
    float energyWh;
  };
  for (const Row& row : {Row{"PCM_SENSOR", kWhOf300Seconds}, Row{"PCM_CHARGER", kWhOf300Seconds},
                         Row{"PCM_BATTERY", 0.0F}, Row{"pcm_sensor", 0.0F},
                         Row{"PCM_SENSOR ", 0.0F}, Row{"PCM_SENSOR2", 0.0F},
                         Row{"PCM_CHARGE", 0.0F}, Row{"PCM_SENSOR\\u0000", 0.0F}, Row{"", 0.0F}}) {
    EXPECT_EQ(EnergyOf({{kToday,
                         List({At("09:00:00"), At("10:00:00", "36", row.type), At("10:05:00")})}}),
              row.energyWh)
        << row.type;
  }
}

TEST(DayEnergy, ComputesEachStepIn32BitFloat) {
  // 17.3 W for 61 s, 23.7 W for 127 s, 9.1 W for 299 s and 41.9 W for 599 s. In double, or with the
  // two divisions combined, the result ends in ...804 instead of ...805.
  const float energyWh =
      EnergyOf({{kToday, List({At("09:00:00"), At("10:00:00", "17.3"), At("10:01:01", "23.7"),
                               At("10:03:08", "9.1"), At("10:08:07", "41.9"), At("10:18:06")})}});
  EXPECT_EQ(std::bit_cast<std::uint32_t>(energyWh), 0x41210805U);
}

TEST(DayEnergy, AddsInOrderInFloatAndDividesTheSumOnce) {
  // 118 s at 108.0 W, 362 at 11.6, 444 at 70.3, 359 at 54.5, 254 at 87.3 and 473 at 62.3. The
  // result differs if the sum or the contributions are in double, if the sum starts from the end,
  // if each contribution is divided by 0.88, if one division by 3600 comes at the end, if 0.88 or
  // its reciprocal is a double, or if the powers are not narrowed.
  const float energyWh =
      EnergyOf({{kToday, List({At("09:00:00"), At("10:00:00", "108.0"), At("10:01:58", "11.6"),
                               At("10:08:00", "70.3"), At("10:15:24", "54.5"),
                               At("10:21:23", "87.3"), At("10:25:37", "62.3"), At("10:33:30")})}});
  EXPECT_EQ(std::bit_cast<std::uint32_t>(energyWh), 0x4216B64FU);
}

TEST(DayEnergy, AddsTheLinkToTheDayBeforeFirst) {
  // 600 seconds at 100,663,296 watts are 2^24 watt-hours. A 32-bit float cannot add one watt-hour
  // to that. Summed from the end, the result would be 2 larger.
  const std::string strong = AtDayBefore("23:55:00", "100663296");
  EXPECT_EQ(
      EnergyOf({{kDayBefore, List({strong})},
                {kToday, List({At("00:05:00"), At("12:00:00"), At("12:01:40"), At("23:59:00")})},
                {kDayAfter, List({AtDayAfter("00:00:40")})}}),
      16777216.0F / 0.88F);
}

TEST(DayEnergy, IsNegativeForNegativePower) {
  EXPECT_EQ(EnergyOf({{kToday, List({At("09:00:00"), At("10:00:00", "-36"), At("10:05:00")})}}),
            -kWhOf300Seconds);
  EXPECT_EQ(EnergyOf({{kToday, List({At("09:00:00"), At("10:00:00", "-72"), At("10:05:00"),
                                     At("10:10:00")})}}),
            -kWhOf300Seconds);
}

TEST(DayEnergy, BooksNothingForAStepBackInTimeButTheNextInterval) {
  EXPECT_EQ(
      EnergyOf({{kToday, List({At("09:00:00"), At("10:05:00"), At("10:00:00"), At("10:05:00")})}}),
      kWhOf300Seconds);
}

TEST(DayEnergy, LinkToTheDayBeforeUsesThePowerOfTheEarlierSample) {
  EXPECT_EQ(EnergyOf({{kDayBefore,
                       List({AtDayBefore("23:50:00", "9999"), AtDayBefore("23:58:00", "72")})},
                      {kToday, List({At("00:00:30", "9999"), At("12:00:00", "9999")})}}),
            3.0F / 0.88F);
}

TEST(DayEnergy, LinkToTheDayAfterUsesThePowerOfTheLaterSample) {
  EXPECT_EQ(
      EnergyOf({{kToday, List({At("12:00:00", "9999"), At("23:59:30", "9999")})},
                {kDayAfter, List({AtDayAfter("00:02:00", "72"), AtDayAfter("00:07:00", "9999")})}}),
      3.0F / 0.88F);
}

TEST(DayEnergy, LinksIgnoreTheTypeOfTheNeighboursSample) {
  const std::string other = Sample("2024-05-05T23:58:00", "36", "PCM_BATTERY");
  EXPECT_EQ(EnergyOf({{kDayBefore, List({other})}, {kToday, List({At("00:03:00")})}}),
            kWhOf300Seconds);
}

TEST(DayEnergy, GapAcrossMidnightCountsTwice) {
  FakeDays days{{kDayBefore, List({AtDayBefore("23:50:00"), AtDayBefore("23:58:00", "30")})},
                {kToday, List({At("00:02:00", "60"), At("12:00:00")})}};
  // 240 seconds, once with the power of each side.
  EXPECT_EQ(DayEnergyWh(Day(kToday), days.Summaries()), 2.0F / 0.88F);
  EXPECT_EQ(DayEnergyWh(Day(kDayBefore), days.Summaries()), 4.0F / 0.88F);
}

TEST(DayEnergy, SingleSampleHasOnlyItsLinkToTheDayBefore) {
  FakeDays days{{kDayBefore, List({AtDayBefore("23:58:00", "36")})},
                {kToday, List({At("00:03:00", "9999")})},
                {kDayAfter, List({AtDayAfter("00:00:00", "9999")})}};
  EXPECT_EQ(DayEnergyWh(Day(kToday), days.Summaries()), kWhOf300Seconds);
  EXPECT_EQ(days.ReadDates(), (std::vector<std::string>{kToday, kDayBefore}));
}

TEST(DayEnergy, ReadsTheDayThenTheDayBeforeThenTheDayAfter) {
  FakeDays days{{kToday, List({At("10:00:00"), At("10:05:00")})}};
  static_cast<void>(DayEnergyWh(Day(kToday), days.Summaries()));
  EXPECT_EQ(days.ReadDates(), (std::vector<std::string>{kToday, kDayBefore, kDayAfter}));
}

TEST(DayEnergy, EdgesOfAnotherTypeHaveNoLinks) {
  FakeDays days{{kDayBefore, List({AtDayBefore("23:59:00")})},
                {kToday, List({At("00:00:00", "36", "X"), At("23:59:00", "36", "X")})},
                {kDayAfter, List({AtDayAfter("00:00:00")})}};
  EXPECT_EQ(DayEnergyWh(Day(kToday), days.Summaries()), 0.0F);
  EXPECT_EQ(days.ReadDates(), (std::vector<std::string>{kToday}));
}
