#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "base/date_text.h"
#include "base/zone_days.h"
#include "reports/fake_ranking.h"

// The cutoff around the days on which clocks change: 86400 seconds back with the hour restored.

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace TestSupport;
using testing::ElementsAre;

namespace {

/// The applications of one day up to `now`: "Before" has a row at `before` on `day`, "At" one at
/// `at`.
std::vector<std::string> AppsOfOneDay(const DateTime& now, const DateTime& day,
                                      const std::string& before, const std::string& at) {
  const std::string date = FormatDateTime(day, kDateFormat) + ":";
  return NamesOf(FakeRanking().Rank(
      {StoreRow("b", "Before", "1", date + before), StoreRow("a", "At", "1", date + at)},
      ReportingPeriod(now, 1)));
}

}  // namespace

TEST(RankApplications, OneDayOnTheSpringChangeReachesBackToTheSameHour) {
  EXPECT_THAT(AppsOfOneDay(Spring(0), Spring(-1), "11:59:59", "12:00:00"), ElementsAre("At"));
}

TEST(RankApplications, OneDayOnTheAutumnChangeReachesBackToTheSameHour) {
  EXPECT_THAT(AppsOfOneDay(Autumn(0), Autumn(-1), "11:59:59", "12:00:00"), ElementsAre("At"));
}

TEST(RankApplications, OneDayReachesBackToTheHourAfterASkippedOne) {
  // 02:30 does not exist on the day of the change and is read as 03:30.
  EXPECT_THAT(AppsOfOneDay(Spring(1, 2, 30), Spring(0), "03:29:59", "03:30:00"), ElementsAre("At"));
}

TEST(RankApplications, OneDayOnAnOrdinaryDayReachesBackToTheSameHour) {
  EXPECT_THAT(AppsOfOneDay(Spring(20), Spring(19), "11:59:59", "12:00:00"), ElementsAre("At"));
  EXPECT_THAT(AppsOfOneDay(Autumn(20), Autumn(19), "11:59:59", "12:00:00"), ElementsAre("At"));
}
