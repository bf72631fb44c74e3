// In America/St_Johns, three and a half hours behind UTC in winter.

#include <gtest/gtest.h>

#include "text/local_moment.h"

using WattleafHost::FirstInstantOf;
using WattleafHost::IsoTime;
using namespace std::chrono_literals;

TEST(IsoTime, HasANegativeOffsetWithHalfAnHourWestOfGreenwich) {
  EXPECT_EQ(IsoTime(1795353600), "2026-11-22T09:50:00-03:30");
  EXPECT_EQ(IsoTime(1782864000), "2026-06-30T21:30:00-02:30");
}

TEST(FirstInstantOf, IsTheBeginOfAnHourWestOfGreenwich) {
  EXPECT_EQ(FirstInstantOf(2026y / 11 / 22, 9), 1795353600 - 50 * 60);
}
