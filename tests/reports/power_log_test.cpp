#include "reports/power_log.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <limits>

#include "base/local_calendar.h"
#include "base/scratch_folder.h"
#include "reports/many_rows.h"
#include "reports/report_times.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::At;
using TestSupport::TimeAt;

namespace {

std::vector<std::int64_t> EnergyInOrder(const PowerLog& log) {
  std::vector<std::int64_t> result;
  for (const PowerLogRecord& record : log.Records()) result.push_back(record.TotalEnergy);
  return result;
}

/// The first row with this name and instant, found without the index of the log.
const PowerLogRecord* FindByLinearSearch(const PowerLog& log, std::string_view name,
                                         const LocalTime& time) {
  for (const PowerLogRecord& record : log.Records()) {
    if (record.Name == name && InstantOf(record.TimeStamp.fields) == InstantOf(time.fields))
      return &record;
  }
  return nullptr;
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
  ASSERT_NE(log.TryFind("a", TimeAt("2026-11-14:03:00:00")), nullptr);
  EXPECT_EQ(log.TryFind("a", TimeAt("2026-11-14:03:00:00"))->TotalEnergy, 2);
  EXPECT_EQ(log.TryFind("b", TimeAt("2026-11-14:02:00:00"))->TotalEnergy, 3);
  EXPECT_EQ(log.TryFind("b", TimeAt("2026-11-14:03:00:00")), nullptr);
  EXPECT_EQ(log.TryFind("c", TimeAt("2026-11-14:02:00:00")), nullptr);
  EXPECT_EQ(PowerLog().TryFind("a", TimeAt("2026-11-14:02:00:00")), nullptr);
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
  EXPECT_EQ(log.TryFind("a", TimeAt("2026-11-14:02:00:00")), nullptr);
  EXPECT_EQ(log.TryFind("A", TimeAt("2026-11-14:02:00:00")), nullptr);
  EXPECT_EQ(log.TryFind(std::string_view("a\0c", 3), TimeAt("2026-11-14:02:00:00")), nullptr);
  EXPECT_NE(log.TryFind(std::string_view("a\0b", 3), TimeAt("2026-11-14:02:00:00")), nullptr);
}

TEST(PowerLog, TreatsTimesOfOneInstantAsEqual) {
  PowerLog log;
  DateTime thirtyFirst = At("2026-11-30:02:00:00");
  thirtyFirst.tm_mday = 31;  // November has no such day
  log.Append({"a", "", {thirtyFirst, InstantOf(thirtyFirst)}, 1});
  EXPECT_NE(log.TryFind("a", TimeAt("2026-12-01:02:00:00")), nullptr);
}

TEST(PowerLog, TreatsAllTimesOutsideTheCalendarAsEqual) {
  PowerLog log;
  log.Append({"a", "", TimeAt("1901-01-01:00:00:00"), 1});
  ASSERT_NE(log.TryFind("a", LocalTime{}), nullptr);
  EXPECT_EQ(log.TryFind("a", TimeAt("1850-06-01:12:00:00"))->TotalEnergy, 1);
}

TEST(PowerLog, DropsASecondRowOfOneIdentity) {
  PowerLog log;
  log.Append({"a", "first", TimeAt("2026-11-14:02:00:00"), 1});
  log.Append({"a", "second", TimeAt("2026-11-14:02:00:00"), 2});
  EXPECT_EQ(EnergyInOrder(log), (std::vector<std::int64_t>{1}));
  EXPECT_EQ(log.TryFind("a", TimeAt("2026-11-14:02:00:00"))->DisplayName, "first");
}

TEST(PowerLog, DistinguishesNamesThatDifferAfterAZero) {
  PowerLog log;
  log.Append({"a", "", TimeAt("2026-11-14:02:00:00"), 1});
  log.Append({std::string("a\0b", 3), "", TimeAt("2026-11-14:02:00:00"), 2});
  log.Append({std::string("a\0", 2), "", TimeAt("2026-11-14:02:00:00"), 3});
  EXPECT_EQ(EnergyInOrder(log), (std::vector<std::int64_t>{1, 2, 3}));
}

TEST(PowerLog, FindsTheSameRowAsALinearSearch) {
  PowerLog log;
  std::uint32_t state = 1;
  for (int i = 0; i < 2000; ++i) {
    state = state * 1664525 + 1013904223;
    const std::string name(1 + state / 65536 % 3, static_cast<char>('a' + state / 1048576 % 3));
    LocalTime time{At("2026-11-14:02:00:00")};
    time.fields.tm_mday += static_cast<std::int32_t>(state / 4194304 % 40);
    time.instant = InstantOf(time.fields);
    EXPECT_EQ(log.TryFind(name, time), FindByLinearSearch(log, name, time));
    if (i % 3 == 0) log.Append({name, "", time, i});
  }
}

// With a linear search for each row, ten times the rows would take a hundred times as long.
TEST(FoldReport, TimeGrowsLinearlyWithTheRows) {
  const std::clock_t few = std::max<std::clock_t>(TimeToFold(2'000), 1);
  const auto many = TimeToFold(20'000);
  EXPECT_LT(many, 40 * few);
}
