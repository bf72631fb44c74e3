#include "reports/ranking.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "reports/fake_ranking.h"

// The arithmetic of the total and of the shares.

using namespace TestSupport;
using namespace Zq::Gantry::Server::Services::Wattleaf;
using testing::ElementsAre;

TEST(RankApplications, ComputesEachStepIn32BitFloat) {
  // As 32-bit floats 54979474 is 54979472, times 100 it is 5497947136 (a multiple of 512), and the
  // total of 89395689 is 89395688. The last digits differ in double precision, with an integer
  // multiplication, or with the division first.
  const Ranking ranking =
      FakeRanking().Rank({StoreRow("a", "A", "54979474"), StoreRow("b", "B", "34416215")});
  ASSERT_EQ(ranking.size(), 2U);
  EXPECT_EQ(ranking[0].Value, 61.50125503540039F);
}

TEST(RankApplications, ConvertsA64BitEnergyToFloatInOneStep) {
  // 2^60 + 2^36 + 1 is nearer to 2^60 + 2^37 than to 2^60. A conversion to double first drops the
  // last bit; the tie is then rounded to 2^60. Its low 32 bits are 1, so the total is 4. The float
  // nearest to (2^60 + 2^37) * 100 is 838860928 * 2^37.
  const Ranking ranking =
      FakeRanking().Rank({StoreRow("a", "A", "1152921573326323713"), StoreRow("b", "", "3")});
  EXPECT_THAT(ValuesOf(ranking), ElementsAre(838860928.0F * 34359738368.0F));
}

TEST(RankApplications, ConvertsTheTotalToFloatAfterTheSum) {
  // 2^24 + 2 is a 32-bit float, 2^24 + 1 is not: summed in 32-bit float the total would stay at
  // 2^24 and the first share would be 100.
  const Ranking ranking = FakeRanking().Rank(
      {StoreRow("a", "A", "16777216"), StoreRow("b", "", "1"), StoreRow("b", "", "1")});
  EXPECT_THAT(ValuesOf(ranking), ElementsAre(1677721600.0F / 16777218.0F));
  EXPECT_LT(ValuesOf(ranking)[0], 100.0F);
}

TEST(RankApplications, AddsSharesIn32BitFloat) {
  const std::vector<std::string> rows(11, StoreRow("a", "A", "1"));
  EXPECT_THAT(ValuesOf(FakeRanking().Rank(rows)), ElementsAre(100.00000762939453F));
}

TEST(RankApplications, ReadsEnergyIn32BitsForTheTotalAndIn64BitsForShares) {
  // 2^32 + 100 counts as 100 in the total, and as 4294967296 (in 32-bit float) in its share.
  const Ranking ranking =
      FakeRanking().Rank({StoreRow("a", "Wide", "4294967396"), StoreRow("b", "Plain", "100")});
  EXPECT_THAT(NamesOf(ranking), ElementsAre("Wide", "Plain"));
  EXPECT_THAT(ValuesOf(ranking), ElementsAre(2147483648.0F, 50.0F));
}

TEST(RankApplications, ReadsSigned32BitsForTheTotal) {
  // 4294967295 counts as -1 in the total: 100 * 3 / 2.
  const Ranking ranking =
      FakeRanking().Rank({StoreRow("a", "A", "3"), StoreRow("b", "", "4294967295")});
  EXPECT_THAT(ValuesOf(ranking), ElementsAre(150.0F));
}

TEST(RankApplications, SumsTheTotalIn64Bits) {
  // Three times 2^31 - 1: a sum in 32 bits would wrap.
  const Ranking ranking =
      FakeRanking().Rank({StoreRow("a", "A", "2147483647"), StoreRow("b", "B", "2147483647"),
                          StoreRow("c", "C", "2147483647")});
  EXPECT_THAT(ValuesOf(ranking),
              ElementsAre(33.33333206176758F, 33.33333206176758F, 33.33333206176758F));
}

TEST(RankApplications, ReadsEveryKindOfNumber) {
  // 1.9 is truncated to 1, 1e30 is beyond 64 bits and counts as 0, 2^64 - 1 is -1 in total and
  // share.
  const Ranking ranking = FakeRanking().Rank(
      {StoreRow("a", "Cut", "1.9"), StoreRow("b", "Beyond", "1e30"),
       StoreRow("c", "Wrapped", "18446744073709551615"), StoreRow("d", "Plain", "4")});
  EXPECT_THAT(NamesOf(ranking), ElementsAre("Plain", "Cut", "Beyond", "Wrapped"));
  EXPECT_THAT(ValuesOf(ranking), ElementsAre(100.0F, 25.0F, 0.0F, -25.0F));
}

TEST(RankApplications, ReturnsValuesThatAreNotFiniteForATotalOfZero) {
  const Ranking nothing = FakeRanking().Rank({StoreRow("a", "A", "0")});
  ASSERT_EQ(nothing.size(), 1U);
  EXPECT_TRUE(std::isnan(nothing[0].Value));

  const Ranking cancelled = FakeRanking().Rank(
      {StoreRow("z", "Zero", "0"), StoreRow("n", "Negative", "-5"), StoreRow("p", "Positive", "5"),
       StoreRow("b", "Both", "5"), StoreRow("b", "Both", "-5")});
  ASSERT_EQ(cancelled.size(), 4U);
  EXPECT_EQ(cancelled[0].Name, "Positive");
  EXPECT_TRUE(std::isinf(cancelled[0].Value));
  EXPECT_EQ(cancelled[1].Name, "Negative");
  EXPECT_TRUE(std::isnan(cancelled[2].Value));
  EXPECT_TRUE(std::isnan(cancelled[3].Value));
}

TEST(RankApplications, RanksNegativeEnergies) {
  const Ranking ranking = FakeRanking().Rank({StoreRow("a", "A", "-3"), StoreRow("b", "B", "-1")});
  EXPECT_THAT(NamesOf(ranking), ElementsAre("A", "B"));
  EXPECT_THAT(ValuesOf(ranking), ElementsAre(75.0F, 25.0F));
}
