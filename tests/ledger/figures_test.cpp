#include "ledger/power_ledger.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <limits>

#include "ledger/fake_days.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace TestSupport;

namespace {

constexpr char kToday[] = "2024-05-08";

}  // namespace

TEST(AverageDayEnergy, IsZeroForAnEmptyLedger) {
  const float average = AverageDayEnergyWh(Day(kToday), {});
  EXPECT_EQ(average, 0.0F);
  EXPECT_EQ(TreesSaved(average), 0.0F);
}

TEST(AverageDayEnergy, IsSevenForSevenDaysOfSeven) {
  PowerLedger ledger;
  for (int day = 2; day <= 8; ++day) ledger[Day("2024-05-0" + std::to_string(day))] = 7.0F;
  EXPECT_EQ(AverageDayEnergyWh(Day(kToday), ledger), 7.0F);
}

TEST(AverageDayEnergy, CountsTodayAndAlwaysDividesBySeven) {
  EXPECT_EQ(AverageDayEnergyWh(Day(kToday), {{Day(kToday), 7.0F}}), 1.0F);
}

TEST(AverageDayEnergy, ReachesBackSixDays) {
  EXPECT_EQ(AverageDayEnergyWh(Day(kToday), {{Day("2024-05-02"), 7.0F}}), 1.0F);
  EXPECT_EQ(AverageDayEnergyWh(Day(kToday), {{Day("2024-05-01"), 7.0F}}), 0.0F);
}

TEST(AverageDayEnergy, OmitsAnEntryEightDaysOld) {
  EXPECT_EQ(AverageDayEnergyWh(Day(kToday), {{Day("2024-04-30"), 7.0F}}), 0.0F);
}

TEST(AverageDayEnergy, OmitsTomorrow) {
  EXPECT_EQ(AverageDayEnergyWh(Day(kToday), {{Day("2024-05-09"), 7.0F}}), 0.0F);
}

TEST(AverageDayEnergy, AddsFromTodayBackwards) {
  // In 32 bits 1 + 1 + 16777216 is 16777218, while 16777216 + 1 + 1 stays 16777216.
  const PowerLedger ledger{
      {Day(kToday), 1.0F}, {Day("2024-05-07"), 1.0F}, {Day("2024-05-06"), 16777216.0F}};
  EXPECT_EQ(AverageDayEnergyWh(Day(kToday), ledger), 16777218.0F / 7.0F);
}

TEST(AverageDayEnergy, AddsIn32BitFloat) {
  // In double the sum would be 16777218.
  const PowerLedger ledger{
      {Day(kToday), 16777216.0F}, {Day("2024-05-07"), 1.0F}, {Day("2024-05-06"), 1.0F}};
  EXPECT_EQ(AverageDayEnergyWh(Day(kToday), ledger), 16777216.0F / 7.0F);
}

TEST(AverageDayEnergy, DividesTheSumOnceBySeven) {
  // Multiplied by a seventh, the result ends in ...203.
  const float today = std::bit_cast<float>(std::uint32_t{0x42081FC2});  // 34.03101
  EXPECT_EQ(std::bit_cast<std::uint32_t>(AverageDayEnergyWh(Day(kToday), {{Day(kToday), today}})),
            0x409B9202U);
}

TEST(AverageDayEnergy, AddsNegativeDays) {
  EXPECT_EQ(AverageDayEnergyWh(Day(kToday), {{Day(kToday), -14.0F}, {Day("2024-05-07"), 7.0F}}),
            -1.0F);
}

TEST(AverageDayEnergy, IsZeroForASumBeyond32BitFloat) {
  constexpr float kMost = std::numeric_limits<float>::max();
  EXPECT_EQ(AverageDayEnergyWh(Day(kToday), {{Day(kToday), kMost}, {Day("2024-05-07"), kMost}}),
            0.0F);
}

TEST(TreesSaved, Is1095ThousandthsFor300WattHours) { EXPECT_FLOAT_EQ(TreesSaved(300.0F), 1.095F); }

TEST(TreesSaved, ComputesFourStepsIn32BitFloatInOrder) {
  // For 361.78 the result differs in another order of the four steps, with combined factors, or in
  // double.
  EXPECT_EQ(std::bit_cast<std::uint32_t>(TreesSaved(361.78F)), 0x3FA9060DU);
}

TEST(TreesSaved, DoesNotCombineItsFactors) {
  // With combined factors, or in double, the result ends in ...D79.
  EXPECT_EQ(std::bit_cast<std::uint32_t>(TreesSaved(0.1F)), 0x39BF5D78U);
}
