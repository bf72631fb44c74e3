#include "reports/power_log.h"

#include <gtest/gtest.h>

#include <limits>

#include "base/date_time_text.h"
#include "base/local_calendar.h"

namespace {

using TestSupport::LocalTime;
using Zq::Gantry::Server::Services::Wattleaf::DateTime;
using Zq::Gantry::Server::Services::Wattleaf::InstantOf;
using Zq::Gantry::Server::Services::Wattleaf::ReportingPeriod;

const DateTime kNow = LocalTime(2026, 11, 14, 10, 30, 15);

TEST(ReportingPeriod, IncludesTheSecondOfTheCutoffButNoEarlierOne) {
  const ReportingPeriod month(kNow, 30);
  EXPECT_TRUE(month.Includes(InstantOf(LocalTime(2026, 10, 15, 10, 30, 15))));
  EXPECT_FALSE(month.Includes(InstantOf(LocalTime(2026, 10, 15, 10, 30, 14))));
}

TEST(ReportingPeriod, BeginsNowForZeroDays) {
  const ReportingPeriod none(kNow, 0);
  EXPECT_TRUE(none.Includes(InstantOf(kNow)));
  EXPECT_FALSE(none.Includes(InstantOf(LocalTime(2026, 11, 14, 10, 30, 14))));
}

TEST(ReportingPeriod, NeverIncludesATimeOutsideTheCalendar) {
  const DateTime noTime{};
  EXPECT_FALSE(ReportingPeriod(kNow, 30).Includes(InstantOf(noTime)));
  EXPECT_FALSE(ReportingPeriod(kNow, 1'000'000).Includes(InstantOf(noTime)));
}

TEST(ReportingPeriod, IncludesEveryTimeForACutoffOutsideTheCalendar) {
  EXPECT_TRUE(ReportingPeriod(kNow, 1'000'000).Includes(InstantOf(LocalTime(1970, 1, 2, 0, 0, 0))));
}

TEST(ReportingPeriod, IncludesEveryTimeForTheSmallestNumberOfDays) {
  // The smallest int stays the same when it is negated: 2^31 days before now is outside the
  // calendar.
  const ReportingPeriod wrapped(kNow, std::numeric_limits<int>::min());
  EXPECT_TRUE(wrapped.Includes(InstantOf(LocalTime(1970, 1, 2, 0, 0, 0))));
}

TEST(ReportingPeriod, BeginsInTheFutureForNegativeDays) {
  const ReportingPeriod tomorrow(kNow, -1);
  EXPECT_FALSE(tomorrow.Includes(InstantOf(kNow)));
  EXPECT_TRUE(tomorrow.Includes(InstantOf(LocalTime(2026, 11, 15, 10, 30, 15))));
}

}  // namespace
