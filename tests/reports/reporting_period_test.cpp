#include "reports/power_log.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using Zq::Gantry::Server::Services::Wattleaf::DateTime;
using Zq::Gantry::Server::Services::Wattleaf::ReportingPeriod;

DateTime At(int year, int month, int day, int hour, int minute, int second) {
  return {.tm_sec = second,
          .tm_min = minute,
          .tm_hour = hour,
          .tm_mday = day,
          .tm_mon = month - 1,
          .tm_year = year - 1900};
}

const DateTime kNow = At(2026, 11, 14, 10, 30, 15);

TEST(ReportingPeriod, CountsTheSecondOfTheCutoffAndNotTheOneBefore) {
  const ReportingPeriod month(kNow, 30);
  EXPECT_TRUE(month.Includes(At(2026, 10, 15, 10, 30, 15)));
  EXPECT_FALSE(month.Includes(At(2026, 10, 15, 10, 30, 14)));
}

TEST(ReportingPeriod, OfNoDaysBeginsNow) {
  const ReportingPeriod none(kNow, 0);
  EXPECT_TRUE(none.Includes(kNow));
  EXPECT_FALSE(none.Includes(At(2026, 11, 14, 10, 30, 14)));
}

TEST(ReportingPeriod, NeverCountsATimeOutsideTheCalendar) {
  const DateTime noTime{};
  EXPECT_FALSE(ReportingPeriod(kNow, 30).Includes(noTime));
  EXPECT_FALSE(ReportingPeriod(kNow, 1'000'000).Includes(noTime));
}

TEST(ReportingPeriod, WithACutoffOutsideTheCalendarCountsEveryTime) {
  EXPECT_TRUE(ReportingPeriod(kNow, 1'000'000).Includes(At(1970, 1, 2, 0, 0, 0)));
}

TEST(ReportingPeriod, OfTheSmallestNumberOfDaysStaysTheSmallestWhenNegated) {
  // 2^31 days before now in both readings: no cutoff of the calendar.
  const ReportingPeriod wrapped(kNow, std::numeric_limits<int>::min());
  EXPECT_TRUE(wrapped.Includes(At(1970, 1, 2, 0, 0, 0)));
}

TEST(ReportingPeriod, OfNegativeDaysBeginsInTheFuture) {
  const ReportingPeriod tomorrow(kNow, -1);
  EXPECT_FALSE(tomorrow.Includes(kNow));
  EXPECT_TRUE(tomorrow.Includes(At(2026, 11, 15, 10, 30, 15)));
}

}  // namespace
