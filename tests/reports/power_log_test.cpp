#include "reports/power_log.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "base/local_calendar.h"
#include "base/scratch_folder.h"
#include "reports/log_rows.h"
#include "reports/many_rows.h"
#include "reports/report_times.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::At;
using TestSupport::RowsOf;
using TestSupport::TimeAt;

namespace {

std::vector<std::int64_t> EnergyInOrder(const PowerLog& log) {
  std::vector<std::int64_t> result;
  for (const PowerLogRecord& record : RowsOf(log)) result.push_back(record.TotalEnergy);
  return result;
}

/// Whether the log has a row of this identity.
bool Has(PowerLog& log, std::string_view name, const RowTime& time) {
  return log.TryAddEnergy(name, time.instant, 0);
}

/// The shortest of three runs, since other load can only lengthen a run. Processor time where the C
/// library measures it.
std::clock_t TimeToFold(std::size_t rows) {
  std::clock_t shortest = std::numeric_limits<std::clock_t>::max();
  for (int run = 0; run < 3; ++run) {
    const TestSupport::ScratchFolder folder;
    TestSupport::WriteManyRows(folder.File(""), rows);
    const std::clock_t start = std::clock();
    EXPECT_EQ(TestSupport::FoldReport(folder.File("")), 2 * rows);
    shortest = std::min(shortest, std::clock() - start);
  }
  return shortest;
}

}  // namespace

TEST(PowerLog, FindsARowByNameAndInstant) {
  PowerLog log;
  log.Append({"a", "A", TimeAt("2026-11-14:02:00:00"), 1});
  log.Append({"a", "A", TimeAt("2026-11-14:03:00:00"), 2});
  log.Append({"b", "B", TimeAt("2026-11-14:02:00:00"), 3});
  EXPECT_TRUE(log.TryAddEnergy("a", TimeAt("2026-11-14:03:00:00").instant, 10));
  EXPECT_TRUE(log.TryAddEnergy("b", TimeAt("2026-11-14:02:00:00").instant, 100));
  EXPECT_FALSE(log.TryAddEnergy("b", TimeAt("2026-11-14:03:00:00").instant, 1000));
  EXPECT_FALSE(log.TryAddEnergy("c", TimeAt("2026-11-14:02:00:00").instant, 1000));
  EXPECT_EQ(EnergyInOrder(log), (std::vector<std::int64_t>{1, 12, 103}));
  EXPECT_FALSE(PowerLog().TryAddEnergy("a", TimeAt("2026-11-14:02:00:00").instant, 1));
}

TEST(PowerLog, KeepsTheOrderOfInsertion) {
  PowerLog log;
  log.Append({"z", "", TimeAt("2026-11-14:05:00:00"), 1});
  log.Append({"a", "", TimeAt("2026-11-14:02:00:00"), 2});
  log.Append({"m", "", TimeAt("2026-11-14:09:00:00"), 3});
  EXPECT_EQ(EnergyInOrder(log), (std::vector<std::int64_t>{1, 2, 3}));
}

TEST(PowerLog, ComparesNamesByBytesAndLength) {
  PowerLog log;
  log.Append({std::string("a\0b", 3), "", TimeAt("2026-11-14:02:00:00"), 1});
  EXPECT_FALSE(Has(log, "a", TimeAt("2026-11-14:02:00:00")));
  EXPECT_FALSE(Has(log, "A", TimeAt("2026-11-14:02:00:00")));
  EXPECT_FALSE(Has(log, std::string_view("a\0c", 3), TimeAt("2026-11-14:02:00:00")));
  EXPECT_TRUE(Has(log, std::string_view("a\0b", 3), TimeAt("2026-11-14:02:00:00")));
}

TEST(PowerLog, TreatsTimesOfOneInstantAsEqual) {
  PowerLog log;
  DateTime thirtyFirst = At("2026-11-30:02:00:00");
  thirtyFirst.tm_mday = 31;  // November has no such day
  log.Append({"a", "", RowTime({thirtyFirst, InstantOf(thirtyFirst)}), 1});
  EXPECT_TRUE(Has(log, "a", TimeAt("2026-12-01:02:00:00")));
}

TEST(PowerLog, TreatsAllTimesOutsideTheCalendarAsEqual) {
  PowerLog log;
  log.Append({"a", "", TimeAt("1901-01-01:00:00:00"), 1});
  EXPECT_TRUE(Has(log, "a", RowTime()));
  EXPECT_TRUE(Has(log, "a", TimeAt("1850-06-01:12:00:00")));
}

TEST(PowerLog, DropsASecondRowOfOneIdentity) {
  PowerLog log;
  log.Append({"a", "first", TimeAt("2026-11-14:02:00:00"), 1});
  log.Append({"a", "second", TimeAt("2026-11-14:02:00:00"), 2});
  EXPECT_EQ(EnergyInOrder(log), (std::vector<std::int64_t>{1}));
  EXPECT_EQ(RowsOf(log).front().DisplayName, "first");
}

TEST(PowerLog, DistinguishesNamesThatDifferAfterAZero) {
  PowerLog log;
  log.Append({"a", "", TimeAt("2026-11-14:02:00:00"), 1});
  log.Append({std::string("a\0b", 3), "", TimeAt("2026-11-14:02:00:00"), 2});
  log.Append({std::string("a\0", 2), "", TimeAt("2026-11-14:02:00:00"), 3});
  EXPECT_EQ(EnergyInOrder(log), (std::vector<std::int64_t>{1, 2, 3}));
}

TEST(PowerLog, FindsTheSameRowAsALinearSearch) {
  struct KnownRow {
    std::string name;
    std::int64_t instant;
    std::int64_t energy;
  };
  PowerLog log;
  std::vector<KnownRow> known;
  std::uint32_t state = 1;
  const auto below = [&state](std::uint32_t end) {
    state = state * 1664525 + 1013904223;
    return state / 65536 % end;
  };
  for (int i = 0; i < 5000; ++i) {
    const std::string name(1 + below(10), static_cast<char>('a' + below(4)));
    RowTime time = TimeAt("2026-11-14:02:00:00");
    time.instant += 3600 * below(40);
    const auto row = std::find_if(known.begin(), known.end(), [&](const KnownRow& one) {
      return one.name == name && one.instant == time.instant;
    });
    ASSERT_EQ(log.TryAddEnergy(name, time.instant, i), row != known.end());
    if (row != known.end()) {
      row->energy += i;
    } else if (below(3) == 0) {
      log.Append({name, "", time, i});
      known.push_back({name, time.instant, i});
    }
  }
  std::vector<std::int64_t> expected;
  for (const KnownRow& row : known) expected.push_back(row.energy);
  EXPECT_EQ(EnergyInOrder(log), expected);
  EXPECT_EQ(log.Size(), known.size());
}

// With a linear search for each row, ten times the rows would take a hundred times as long.
TEST(FoldReport, TimeGrowsLinearlyWithTheRows) {
  const std::clock_t few = std::max<std::clock_t>(TimeToFold(2'000), 1);
  const auto many = TimeToFold(20'000);
  EXPECT_LT(many, 40 * few);
}
