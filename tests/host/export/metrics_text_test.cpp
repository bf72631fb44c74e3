#include "export/metrics_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <set>
#include <sstream>
#include <string>

#include "host/export/hostile_names.h"

using namespace WattleafHost;
using testing::HasSubstr;
using testing::Not;

namespace {

Snapshot WithShares(const std::vector<ApplicationShare>& largest) {
  Snapshot snapshot;
  snapshot.applications = ApplicationShares{largest, 50.0, 30};
  return snapshot;
}

}  // namespace

TEST(MetricsText, HasTheMachine) {
  Snapshot snapshot;
  snapshot.hostVersion = "1.2.3";
  snapshot.takenInstant = 1795353600;
  snapshot.supportState = -1;
  EXPECT_EQ(MetricsText(snapshot),
            "# HELP wattleaf_host_info The program that wrote this file.\n"
            "# TYPE wattleaf_host_info gauge\n"
            "wattleaf_host_info{version=\"1.2.3\"} 1\n"
            "# HELP wattleaf_snapshot_timestamp_seconds When this file was written.\n"
            "# TYPE wattleaf_snapshot_timestamp_seconds gauge\n"
            "wattleaf_snapshot_timestamp_seconds 1795353600\n"
            "# HELP wattleaf_platform_support Whether this machine can measure: 1 for its state.\n"
            "# TYPE wattleaf_platform_support gauge\n"
            "wattleaf_platform_support{state=\"supported\"} 0\n"
            "wattleaf_platform_support{state=\"not_supported\"} 0\n"
            "wattleaf_platform_support{state=\"needs_firmware\"} 1\n");
}

TEST(MetricsText, HasEnergyInJoulesAndLeavesOutWhatIsMissing) {
  Snapshot snapshot;
  snapshot.takenInstant = 1000;
  snapshot.averageDayWh = 2.0;
  snapshot.trees = 0.25;
  snapshot.bookedDaysOfAverage = 3;
  snapshot.hours = {{"8:00", "", 0.5, true}, {"9:00", "", 0.0, false}, {"10:00", "", 0.0, true}};
  snapshot.days = {{"Fri", "", 3.0, true}, {"Sat", "", 0.0, false}};
  snapshot.months = {{"Oct", "", 4.0, true}, {"Nov", "", 5.0, true}};
  snapshot.ledger = {
      {"a", "", 1.0, true, 500}, {"b", "", 0.0, false, 600}, {"c", "", 1.0, true, 1001}};
  const std::string text = MetricsText(snapshot);
  EXPECT_THAT(text, HasSubstr("\nwattleaf_average_day_energy_joules 7200\n"));
  EXPECT_THAT(text, HasSubstr("\nwattleaf_trees_saved 0.25\n"));
  EXPECT_THAT(text, HasSubstr(" gauge\n"
                              "wattleaf_hour_energy_joules{hours_ago=\"3\"} 1800\n"
                              "wattleaf_hour_energy_joules{hours_ago=\"1\"} 0\n"
                              "#"));
  EXPECT_THAT(text, HasSubstr(" gauge\nwattleaf_day_energy_joules{days_ago=\"2\"} 10800\n#"));
  EXPECT_THAT(text, HasSubstr(" gauge\n"
                              "wattleaf_month_energy_joules{months_ago=\"1\"} 14400\n"
                              "wattleaf_month_energy_joules{months_ago=\"0\"} 18000\n#"));
  EXPECT_THAT(text, HasSubstr("\nwattleaf_last_booked_day_timestamp_seconds 500\n"));
  EXPECT_THAT(text, Not(HasSubstr("ratio")));
}

TEST(MetricsText, HasNoAverageIfNoneOfItsDaysIsBooked) {
  const std::string text = MetricsText(Snapshot());
  EXPECT_THAT(text, Not(HasSubstr("average")));
  EXPECT_THAT(text, Not(HasSubstr("trees")));
  EXPECT_THAT(text, Not(HasSubstr("last_booked_day")));
}

TEST(MetricsText, LeavesOutANumberThatIsNotFinite) {
  Snapshot snapshot;
  snapshot.bookedDaysOfAverage = 1;
  snapshot.trees = std::numeric_limits<double>::infinity();
  EXPECT_THAT(MetricsText(snapshot), Not(HasSubstr("trees")));
}

TEST(MetricsText, HasSharesAsRatios) {
  const std::string text = MetricsText(WithShares({{"Meadow", "", 37.5}, {"Otter", "", 12.5}}));
  EXPECT_THAT(text, HasSubstr("\nwattleaf_ranking_period_seconds 2592000\n"));
  EXPECT_THAT(text, HasSubstr("\nwattleaf_application_energy_ratio{application=\"Meadow\"} 0.375\n"
                              "wattleaf_application_energy_ratio{application=\"Otter\"} 0.125\n"));
  EXPECT_THAT(text, HasSubstr("\nwattleaf_everything_else_energy_ratio 0.5\n"));
}

TEST(MetricsText, AddsUpSharesOfOneName) {
  const std::string text =
      MetricsText(WithShares({{"Same", "", 25.0}, {"Other", "", 5.0}, {"Same", "", 12.5}}));
  EXPECT_THAT(text, HasSubstr("{application=\"Same\"} 0.375\n"
                              "wattleaf_application_energy_ratio{application=\"Other\"} 0.05\n#"));
}

TEST(MetricsText, KeepsHostileNamesOnOneLineEach) {
  std::vector<ApplicationShare> largest;
  for (const std::string& name : TestSupport::kHostileNames) largest.push_back({name, "", 1.0});
  std::istringstream text(MetricsText(WithShares(largest)));
  std::set<std::string> names;
  const std::string head = "wattleaf_application_energy_ratio{application=\"";
  const std::string tail = "\"} 0.01";
  for (std::string line; std::getline(text, line);) {
    if (!line.starts_with(head)) continue;
    ASSERT_TRUE(line.ends_with(tail)) << line;
    const std::string value = line.substr(head.size(), line.size() - head.size() - tail.size());
    EXPECT_TRUE(names.insert(value).second) << value;
  }
  EXPECT_EQ(names.size(), TestSupport::kHostileNames.size());
}

TEST(LabelValue, EscapesBackslashQuotationMarkAndLineFeed) {
  EXPECT_EQ(LabelValue("a\\b\"c\nd\re"), "a\\\\b\\\"c\\nd\re");
  EXPECT_EQ(LabelValue(std::string(10'000, '"')).size(), 20'000u);
}
