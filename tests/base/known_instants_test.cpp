#include "base/known_instants.h"

#include <gtest/gtest.h>

#include <thread>

#include "base/date_time_text.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

const DateTime kEarlier = TestSupport::LocalTime(2025, 7, 15);
const DateTime kLater = TestSupport::LocalTime(2025, 7, 16);

}  // namespace

TEST(KnownInstants, DecideTheOrderOfBothTimes) {
  ASSERT_TRUE(kEarlier < kLater);
  const KnownInstants known({kEarlier, 8}, {kLater, 7});
  EXPECT_FALSE(kEarlier < kLater);
  EXPECT_TRUE(kLater < kEarlier);
}

TEST(KnownInstants, AreComparedWithThoseOfOtherTimes) {
  const KnownInstants known({kLater, 7}, {kLater, 8});
  EXPECT_TRUE(kLater < kEarlier);
  EXPECT_FALSE(kEarlier < kLater);
}

TEST(KnownInstants, AreThoseOfExactlyTheSameFields) {
  const KnownInstants known({kEarlier, 8}, {kLater, 7});
  EXPECT_EQ(KnownInstants::TryFind(kEarlier), 8);
  EXPECT_EQ(KnownInstants::TryFind(kLater), 7);
  DateTime other = kLater;
  other.tm_isdst ^= 1;
  EXPECT_EQ(KnownInstants::TryFind(other), std::nullopt);
  other = kEarlier;
  other.tm_sec = 1;
  EXPECT_EQ(KnownInstants::TryFind(other), std::nullopt);
}

TEST(KnownInstants, EndWithTheObject) {
  { const KnownInstants known({kEarlier, 8}, {kLater, 7}); }
  EXPECT_EQ(KnownInstants::TryFind(kEarlier), std::nullopt);
  EXPECT_TRUE(kEarlier < kLater);
}

TEST(KnownInstants, AreUnknownToOtherThreads) {
  const KnownInstants known({kEarlier, 8}, {kLater, 7});
  bool isEarlier = false;
  std::thread([&] { isEarlier = kEarlier < kLater; }).join();
  EXPECT_TRUE(isEarlier);
}
