#include "ledger/sample_energy.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <optional>

using namespace Zq::Gantry::Server::Services::Wattleaf;

TEST(EnergyArithmetic, ConstantsHaveTheLedgersValues) {
  EXPECT_EQ(kLargestIntervalSeconds, 600);
  EXPECT_EQ(kSecondsPerHour, 3600.0F);
  EXPECT_EQ(std::bit_cast<std::uint32_t>(kEnergyDivisor), 0x3F6147AEU);
}

TEST(IntervalEnergyWh, CountsOneTo600Seconds) {
  struct Row {
    std::int64_t seconds;
    float energyWh;
  };
  for (const Row& row :
       {Row{-1, 0.0F}, Row{0, 0.0F}, Row{1, 0.01F}, Row{600, 6.0F}, Row{601, 0.0F}}) {
    EXPECT_EQ(IntervalEnergyWh(row.seconds, 36.0F), row.energyWh) << row.seconds;
  }
}

TEST(IntervalEnergyWh, RoundsTheProductAndTheQuotientTo32Bits) {
  // 68 * 89.7 / 3600: in double, or with the division first, in two steps or as a multiplication,
  // or with the watts not narrowed, it ends in ...FEA.
  EXPECT_EQ(std::bit_cast<std::uint32_t>(IntervalEnergyWh(68, 89.7F)), 0x3FD8DFE9U);
}

TEST(IntervalEnergyWh, IsZeroForANegativeDifference) {
  for (const std::int64_t seconds : {-1, -100, -600, -601, -86400}) {
    EXPECT_EQ(IntervalEnergyWh(seconds, 36.0F), 0.0F) << seconds;
    EXPECT_EQ(IntervalEnergyWh(seconds, -36.0F), 0.0F) << seconds;
  }
}

TEST(IntervalEnergyWh, IsNegativeForNegativePower) {
  EXPECT_EQ(IntervalEnergyWh(100, -36.0F), -1.0F);
}

TEST(IntervalEnergyWh, UsesTheLow32BitsOfTheDifference) {
  constexpr std::int64_t kTwoToThe32 = 4294967296;
  EXPECT_EQ(IntervalEnergyWh(kTwoToThe32 + 100, 36.0F), 1.0F);
  EXPECT_EQ(IntervalEnergyWh(-kTwoToThe32 + 100, 36.0F), 1.0F);
  EXPECT_EQ(IntervalEnergyWh(kTwoToThe32, 36.0F), 0.0F);
  EXPECT_EQ(IntervalEnergyWh(kTwoToThe32 - 100, 36.0F), 0.0F);
}

TEST(EnergyBetweenWh, IsZeroWithoutEitherTime) {
  const std::optional<SampleTime> start(SampleTime{1000, 10});
  const std::optional<SampleTime> end(SampleTime{1100, 10});
  EXPECT_EQ(EnergyBetweenWh(start, end, 36.0F), 1.0F);
  // Emptied, so that the bytes of the time are still there.
  std::optional<SampleTime> noStart = start;
  std::optional<SampleTime> noEnd = end;
  noStart.reset();
  noEnd.reset();
  EXPECT_EQ(EnergyBetweenWh(noStart, end, 36.0F), 0.0F);
  EXPECT_EQ(EnergyBetweenWh(start, noEnd, 36.0F), 0.0F);
}
