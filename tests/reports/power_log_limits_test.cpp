#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "reports/log_rows.h"
#include "reports/power_budget.h"
#include "reports/power_log.h"
#include "reports/report_times.h"

// The rows that a log drops when its store cannot hold all of them.

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::RowsOf;
using TestSupport::TimeAt;

namespace {

/// Limits the number of rows, but not the size of the file.
PowerStoreLimits Rows(std::size_t rows) { return {.rows = rows}; }

/// A row that owns its texts.
struct TestRow {
  std::string name;
  RowTime time;
  std::string displayName;

  [[nodiscard]] PowerLogRecord Record() const { return {name, displayName, time, 1}; }
};

std::size_t BytesOf(const TestRow& row) {
  return StoredRowBytes(WrittenBytes(row.name), WrittenBytes(row.displayName));
}

/// A row of 14 November 2026.
TestRow Row(const std::string& name, const std::string& time) {
  return {name, TimeAt(("2026-11-14:" + time).c_str()), ""};
}

/// Limits the file to one bracket and exactly these rows.
PowerStoreLimits RoomFor(const std::vector<TestRow>& rows) {
  PowerStoreLimits limits{.fileBytes = 1};
  for (const TestRow& row : rows) limits.fileBytes += BytesOf(row);
  return limits;
}

TestRow LargeRow(const std::string& time) { return Row(std::string(500, 'n'), time); }

std::string Names(const PowerLog& log) {
  std::string names;
  for (const PowerLogRecord& row : RowsOf(log)) names += row.Name.substr(0, 1);
  return names;
}

/// The shortest of three runs, since other load can only lengthen a run: adds three times as many
/// rows as the log can hold, the oldest first.
std::clock_t TimeToOverflow(std::size_t rows) {
  std::clock_t shortest = std::numeric_limits<std::clock_t>::max();
  for (int run = 0; run < 3; ++run) {
    PowerLog log(Rows(rows));
    TestRow row = Row("a", "02:00:00");
    const std::clock_t start = std::clock();
    for (std::size_t i = 0; i < 3 * rows; ++i) {
      log.Append(row.Record());
      ++row.time.instant;
    }
    EXPECT_EQ(log.Size(), rows);
    shortest = std::min(shortest, std::clock() - start);
  }
  return shortest;
}

void AppendAll(PowerLog& log, const std::vector<TestRow>& rows) {
  for (const TestRow& row : rows) log.Append(row.Record());
}

}  // namespace

TEST(PowerLogLimits, LogHoldsAsManyRowsAsTheLimit) {
  PowerLog log(Rows(3));
  AppendAll(log, {Row("a", "03:00:00"), Row("b", "01:00:00"), Row("c", "02:00:00")});
  EXPECT_EQ(Names(log), "abc");
}

TEST(PowerLogLimits, LogDropsTheOldestRowAtAnyPosition) {
  PowerLog log(Rows(3));
  AppendAll(log, {Row("a", "03:00:00"), Row("b", "01:00:00"), Row("c", "02:00:00"),
                  Row("d", "04:00:00")});
  EXPECT_EQ(Names(log), "acd");
  log.Append(Row("e", "02:30:00").Record());
  EXPECT_EQ(Names(log), "ade");
}

TEST(PowerLogLimits, LogDropsANewRowThatIsOlderThanAllOthers) {
  PowerLog log(Rows(2));
  AppendAll(log, {Row("a", "02:00:00"), Row("b", "03:00:00"), Row("c", "01:59:59")});
  EXPECT_EQ(Names(log), "ab");
}

TEST(PowerLogLimits, LogDropsTheLastRowOfOneSecond) {
  PowerLog log(Rows(2));
  AppendAll(log, {Row("z", "02:00:00"), Row("a", "02:00:00"), Row("m", "02:00:00")});
  EXPECT_EQ(Names(log), "za");
  log.Append(Row("n", "02:00:01").Record());
  EXPECT_EQ(Names(log), "zn");
  log.Append(Row("o", "02:00:01").Record());
  EXPECT_EQ(Names(log), "no");
}

TEST(PowerLogLimits, LogHoldsTheLimitAfterSeveralDrops) {
  PowerLog log(Rows(2));
  AppendAll(log, {Row("a", "01:00:00"), Row("b", "02:00:00"), Row("c", "03:00:00"),
                  Row("d", "03:00:00"), Row("e", "04:00:00"), Row("f", "05:00:00")});
  EXPECT_EQ(Names(log), "ef");
}

TEST(PowerLogLimits, LogFillsTheFileToTheLastByte) {
  const std::vector<TestRow> rows{Row("a", "01:00:00"), Row("b", "02:00:00")};
  PowerStoreLimits limits = RoomFor(rows);
  PowerLog exact(limits);
  AppendAll(exact, rows);
  EXPECT_EQ(Names(exact), "ab");

  --limits.fileBytes;
  PowerLog tooSmall(limits);
  AppendAll(tooSmall, rows);
  EXPECT_EQ(Names(tooSmall), "b");
}

TEST(PowerLogLimits, LogDropsAsManyOldRowsAsALargeOneNeeds) {
  std::vector<TestRow> rows;
  for (char name = 'a'; name <= 'j'; ++name) {
    rows.push_back(Row(std::string(1, name), "02:00:0" + std::string(1, '0' + (name - 'a'))));
  }
  PowerLog log(RoomFor(rows));
  AppendAll(log, rows);
  // The large row has 98 + 500 = 598 bytes. The ten rows in the log have 99 bytes each.
  log.Append(LargeRow("03:00:00").Record());
  EXPECT_EQ(Names(log), "hijn");
}

TEST(PowerLogLimits, LogReusesTheRoomOfADroppedRow) {
  PowerLog log(RoomFor({LargeRow("01:00:00"), Row("a", "02:00:00")}));
  AppendAll(log, {LargeRow("01:00:00"), Row("a", "02:00:00"), Row("b", "03:00:00"),
                  Row("c", "04:00:00"), Row("d", "05:00:00"), Row("e", "06:00:00"),
                  Row("f", "07:00:00"), Row("g", "08:00:00")});
  EXPECT_EQ(Names(log), "abcdefg");
}

TEST(PowerLogLimits, LogRefusesRowsAsOldAsADroppedOne) {
  PowerLog log(RoomFor({LargeRow("02:00:00"), Row("a", "03:00:00")}));
  AppendAll(log, {LargeRow("02:00:00"), Row("a", "03:00:00"), Row("b", "04:00:00")});
  ASSERT_EQ(Names(log), "ab") << "there must be room left";
  AppendAll(log, {Row("c", "02:00:00"), Row("d", "01:00:00"), Row("e", "02:00:01")});
  EXPECT_EQ(Names(log), "abe");
}

TEST(PowerLogLimits, LogRefusesRowsAsOldAsOneThatDidNotFit) {
  PowerLog log(RoomFor({Row("a", "02:00:00"), Row("b", "03:00:00"), Row("c", "03:00:00")}));
  AppendAll(log,
            {Row("a", "02:00:00"), Row("b", "03:00:00"), Row(std::string(150, 'x'), "02:30:00"),
             Row("c", "02:30:00"), Row("d", "02:29:59"), Row("e", "02:30:01")});
  EXPECT_EQ(Names(log), "be");
}

TEST(PowerLogLimits, LogDropsOnlyARowThatIsLargerThanTheFile) {
  const TestRow tooLarge = LargeRow("09:00:00");
  PowerStoreLimits limits = RoomFor({tooLarge});
  --limits.fileBytes;
  PowerLog log(limits);
  AppendAll(log, {Row("a", "01:00:00"), tooLarge, Row("b", "00:30:00")});
  EXPECT_EQ(Names(log), "ab");
}

TEST(PowerLogLimits, LogDropsOnlyARowAboveTheRowLimit) {
  const std::size_t most = BytesOf(LargeRow("09:00:00"));
  PowerLog exact({.rowBytes = most});
  AppendAll(exact, {Row("a", "01:00:00"), LargeRow("09:00:00")});
  EXPECT_EQ(Names(exact), "an");
  PowerLog tooSmall({.rowBytes = most - 1});
  AppendAll(tooSmall, {Row("a", "01:00:00"), LargeRow("09:00:00"), Row("b", "00:30:00")});
  EXPECT_EQ(Names(tooSmall), "ab");
}

TEST(PowerLogLimits, LogCountsTheBytesOfDisplayNames) {
  TestRow named = Row("b", "02:00:00");
  named.displayName = "B";
  PowerLog log(RoomFor({Row("a", "01:00:00"), Row("b", "02:00:00")}));
  AppendAll(log, {Row("a", "01:00:00"), named});
  EXPECT_EQ(Names(log), "b");
}

TEST(PowerLogLimits, LogDoesNotFindADroppedRow) {
  PowerLog log(Rows(2));
  AppendAll(log, {Row("a", "01:00:00"), Row("b", "02:00:00"), Row("c", "03:00:00")});
  EXPECT_FALSE(log.TryAddEnergy("a", TimeAt("2026-11-14:01:00:00").instant, 10));
  EXPECT_TRUE(log.TryAddEnergy("b", TimeAt("2026-11-14:02:00:00").instant, 20));
  EXPECT_TRUE(log.TryAddEnergy("c", TimeAt("2026-11-14:03:00:00").instant, 30));
  ASSERT_EQ(Names(log), "bc");
  EXPECT_EQ(RowsOf(log).front().TotalEnergy, 1 + 20);
  EXPECT_EQ(RowsOf(log).back().TotalEnergy, 1 + 30);
}

TEST(PowerLogLimits, LogIsEmptyForALimitOfZeroRows) {
  PowerLog log(Rows(0));
  log.Append(Row("a", "01:00:00").Record());
  EXPECT_EQ(Names(log), "");
}

// If each removal looked at all rows, ten times the rows would take a hundred times as long.
TEST(PowerLogLimits, TimeToRemoveRowsGrowsLinearly) {
  const std::clock_t few = std::max<std::clock_t>(TimeToOverflow(1'000), 1);
  EXPECT_LT(TimeToOverflow(10'000), 40 * few);
}

// Twelve names and twelve seconds, so that rows of the same name and of the same time come, go and
// come again.
TEST(PowerLogLimits, LogFindsExactlyTheRowsThatItHolds) {
  std::uint32_t state = 3;
  const auto below = [&state](std::uint32_t end) {
    state = state * 1664525 + 1013904223;
    return state / 65536 % end;
  };
  const std::int64_t first = TimeAt("2026-11-14:02:00:00").instant;
  for (int round = 0; round < 60; ++round) {
    PowerLog log(Rows(1 + below(40)));
    std::map<std::pair<std::string, std::int64_t>, std::int64_t> energies;
    for (std::uint32_t i = 0; i < 120; ++i) {
      TestRow row = Row(std::string(1, static_cast<char>('a' + below(12))), "02:00:00");
      row.time.instant += below(2 + i / 10);
      energies.try_emplace({row.name, row.time.instant}, 1);
      log.Append(row.Record());
      std::set<std::pair<std::string, std::int64_t>> held;
      for (const PowerLogRecord& record : RowsOf(log)) {
        held.emplace(record.Name, record.TimeStamp.instant);
      }
      std::erase_if(energies, [&](const auto& entry) { return !held.contains(entry.first); });
      for (char name = 'a'; name < 'a' + 12; ++name) {
        const std::pair identity(std::string(1, name), first + below(14));
        ASSERT_EQ(log.TryAddEnergy(identity.first, identity.second, i), held.contains(identity));
        if (held.contains(identity)) energies[identity] += i;
      }
      for (const PowerLogRecord& record : RowsOf(log)) {
        ASSERT_EQ(record.TotalEnergy,
                  (energies[{std::string(record.Name), record.TimeStamp.instant}]));
      }
    }
  }
}

// For any rows in any order the log keeps the rows that remain after sorting by age and one cut.
TEST(PowerLogLimits, LogKeepsTheSameRowsAsASortByAge) {
  std::uint32_t state = 7;
  const auto below = [&state](std::uint32_t end) {
    state = state * 1664525 + 1013904223;
    return state / 65536 % end;
  };
  for (int round = 0; round < 200; ++round) {
    std::vector<TestRow> rows;
    for (std::uint32_t i = 0; i < 40; ++i) {
      TestRow row = Row(std::to_string(i) + std::string(below(300), 'n'), "02:00:00");
      row.time.instant += below(12);
      rows.push_back(row);
    }
    const PowerStoreLimits limits{.rows = 1 + below(45), .fileBytes = 300 + below(12'000)};
    PowerLog log(limits);
    AppendAll(log, rows);

    std::erase_if(rows, [&](const TestRow& row) { return 1 + BytesOf(row) > limits.fileBytes; });
    const std::vector<TestRow> inOrder = rows;
    std::stable_sort(rows.begin(), rows.end(), [](const auto& left, const auto& right) {
      return left.time.instant > right.time.instant;
    });
    std::vector<std::string> kept;
    std::size_t bytes = 1;
    for (const TestRow& row : rows) {
      bytes += BytesOf(row);
      if (bytes > limits.fileBytes || kept.size() == limits.rows) break;
      kept.push_back(row.name);
    }
    std::vector<std::string> expected;
    for (const TestRow& row : inOrder) {
      if (std::find(kept.begin(), kept.end(), row.name) != kept.end()) expected.push_back(row.name);
    }
    std::vector<std::string> names;
    for (const PowerLogRecord& row : RowsOf(log)) names.emplace_back(row.Name);
    ASSERT_EQ(names, expected) << "round " << round;
  }
}
