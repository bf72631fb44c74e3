// In Europe/Berlin, where the clocks were set forward on 29 March 2026 at 2:00 and back on 25
// October at 3:00.

#include <gtest/gtest.h>

#include "text/local_moment.h"

using WattleafHost::FirstInstantOf;
using WattleafHost::IsoDate;
using WattleafHost::IsoTime;
using namespace std::chrono_literals;

namespace {

constexpr std::chrono::sys_days kForward = 2026y / 3 / 29;
constexpr std::chrono::sys_days kBack = 2026y / 10 / 25;

}  // namespace

TEST(IsoTime, HasTheOffsetOfItsOwnDate) {
  EXPECT_EQ(IsoTime(1795353600), "2026-11-22T14:20:00+01:00");
  EXPECT_EQ(IsoTime(1782864000), "2026-07-01T02:00:00+02:00");
}

TEST(IsoTime, DistinguishesTheTwoHoursOfOneNameByTheOffset) {
  EXPECT_EQ(IsoTime(1792886400), "2026-10-25T02:00:00+02:00");
  EXPECT_EQ(IsoTime(1792890000), "2026-10-25T02:00:00+01:00");
}

TEST(IsoTime, IsEmptyOutsideTheCalendar) {
  EXPECT_EQ(IsoTime(-1), "");
  EXPECT_EQ(IsoTime(1'000'000'000'000), "");
}

TEST(IsoDate, HasTwoDigitsForMonthAndDay) { EXPECT_EQ(IsoDate(2026y / 3 / 5), "2026-03-05"); }

TEST(FirstInstantOf, IsTheBeginOfAnHourInWinterAndInSummer) {
  EXPECT_EQ(IsoTime(FirstInstantOf(2026y / 1 / 15, 14)), "2026-01-15T14:00:00+01:00");
  EXPECT_EQ(IsoTime(FirstInstantOf(2026y / 7 / 15, 0)), "2026-07-15T00:00:00+02:00");
}

TEST(FirstInstantOf, IsTheFirstOfTheTwoHoursWhenTheClockIsSetBack) {
  EXPECT_EQ(FirstInstantOf(kBack, 2), 1792886400);
  EXPECT_EQ(IsoTime(FirstInstantOf(kBack, 3)), "2026-10-25T03:00:00+01:00");
  EXPECT_EQ(IsoTime(FirstInstantOf(kBack, 0)), "2026-10-25T00:00:00+02:00");
}

TEST(FirstInstantOf, IsTheClockChangeForTheHourThatItLeavesOut) {
  EXPECT_EQ(FirstInstantOf(kForward, 2), 1774746000);
  EXPECT_EQ(IsoTime(FirstInstantOf(kForward, 3)), "2026-03-29T03:00:00+02:00");
}
