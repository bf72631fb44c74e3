#include "ledger/day_order.h"

#include <gtest/gtest.h>

#include <optional>

#include "ledger/fake_days.h"
#include "ledger/power_ledger.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

const DateTime kEarlier = TestSupport::Day("2025-07-15");
const DateTime kLater = TestSupport::Day("2025-07-16");

}  // namespace

TEST(DayOrder, IsThatOfTheInstants) {
  const DayOrder order;
  EXPECT_TRUE(order(kEarlier, kLater));
  EXPECT_FALSE(order(kLater, kEarlier));
  EXPECT_FALSE(order(kEarlier, kEarlier));
}

TEST(DayOrder, ComparesKnownDaysByTheirInstants) {
  const DayOrder order;
  const DayOrder::KnownDays known(order, {kEarlier, 8}, {kLater, 7});
  EXPECT_FALSE(order(kEarlier, kLater));
  EXPECT_TRUE(order(kLater, kEarlier));
}

TEST(DayOrder, ComparesAKnownDayWithAnotherOneByTheCalendar) {
  const DayOrder order;
  const DayOrder::KnownDays known(order, {kLater, 7}, {kLater, 8});
  EXPECT_TRUE(order(kEarlier, kLater));
  EXPECT_FALSE(order(kLater, kEarlier));
}

TEST(DayOrder, ForgetsTheDaysWithTheObjectThatKnowsThem) {
  const DayOrder order;
  { const DayOrder::KnownDays known(order, {kEarlier, 8}, {kLater, 7}); }
  EXPECT_TRUE(order(kEarlier, kLater));
  const DayOrder::KnownDays known(order, {kEarlier, 8}, {kLater, 7});
  EXPECT_TRUE(order(kLater, kEarlier));
}

TEST(DayOrder, SharesTheDaysWithItsCopiesOnly) {
  const PowerLedger ledger;
  const PowerLedger other;
  const DayOrder order = ledger.key_comp();
  const DayOrder::KnownDays known(order, {kEarlier, 8}, {kLater, 7});
  EXPECT_TRUE(ledger.key_comp()(kLater, kEarlier));
  EXPECT_TRUE(other.key_comp()(kEarlier, kLater));
}

TEST(KnownDays, AreThoseOfExactlyTheSameFields) {
  const DayOrder order;
  const DayOrder::KnownDays known(order, {kEarlier, 8}, {kLater, 7});
  EXPECT_EQ(known.TryFind(kEarlier), 8);
  EXPECT_EQ(known.TryFind(kLater), 7);
  DateTime other = kLater;
  other.tm_isdst ^= 1;
  EXPECT_EQ(known.TryFind(other), std::nullopt);
  other = kEarlier;
  other.tm_sec = 1;
  EXPECT_EQ(known.TryFind(other), std::nullopt);
}
