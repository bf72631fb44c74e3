#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "reports/fake_ranking.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using testing::ElementsAre;
using TestSupport::NamesOf;
using TestSupport::ValuesOf;

namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNoNumber = std::numeric_limits<float>::quiet_NaN();

}  // namespace

TEST(KeepLargest, SortsByFallingValue) {
  Ranking ranking{{"a", "", 1.0F}, {"b", "", -1.0F}, {"c", "", 2.5F}, {"d", "", 0.0F}};
  KeepLargest(ranking);
  EXPECT_THAT(NamesOf(ranking), ElementsAre("c", "a", "d", "b"));
}

TEST(KeepLargest, PutsWhatIsNoNumberLast) {
  Ranking ranking{{"no", "", kNoNumber}, {"least", "", -kInfinity}, {"most", "", kInfinity},
                  {"one", "", 1.0F},     {"minus", "", -kNoNumber}, {"two", "", 2.0F}};
  KeepLargest(ranking);
  EXPECT_THAT(std::vector(NamesOf(ranking)),
              ElementsAre("most", "two", "one", "least", testing::_, testing::_));
}

TEST(KeepLargest, OrdersAnyMixtureOfInfinitiesAndNoNumbers) {
  // An ordering that is broken by what is no number lets the sort run out of its array.
  const float values[] = {kNoNumber, 1.0F, kInfinity, -kInfinity, kNoNumber, -2.0F, kInfinity};
  Ranking ranking;
  for (int i = 0; i < 10'000; ++i) ranking.push_back({"", "", values[i % 7 * (i % 11) % 7]});
  KeepLargest(ranking);
  ASSERT_EQ(ranking.size(), 20U);
  for (const TopAppEntry& entry : ranking) EXPECT_EQ(entry.Value, kInfinity);
}

TEST(KeepLargest, CutsOffWhatStandsBehindTheTwentieth) {
  Ranking ranking;
  for (int i = 0; i < 23; ++i) ranking.push_back({"", "", static_cast<float>(i)});
  KeepLargest(ranking);
  EXPECT_EQ(ranking.size(), 20U);
  EXPECT_EQ(ranking.back().Value, 3.0F);
}
