// In Europe/Berlin, on the day on which the clock was set back: 25 October 2026.

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "snapshot/snapshot.h"

using namespace WattleafHost;
using Zq::Gantry::Server::Services::Wattleaf::DateTime;

namespace {

constexpr std::int64_t kNow = 1792923000;  // 11:10

DateTime Day(int month, int day) {
  DateTime date;
  date.tm_year = 126;
  date.tm_mon = month - 1;
  date.tm_mday = day;
  date.tm_isdst = -1;
  return date;
}

SnapshotInputs InputsOf(const std::vector<std::pair<DateTime, float>>& ledger) {
  SnapshotInputs inputs;
  inputs.now = kNow;
  for (const auto& [day, energyWh] : ledger) inputs.ledger.emplace(day, energyWh);
  return inputs;
}

std::vector<std::string> BeginsOf(const std::vector<EnergyPoint>& points) {
  std::vector<std::string> begins;
  for (const EnergyPoint& point : points) begins.push_back(point.begin);
  return begins;
}

std::vector<std::string> LabelsOf(const std::vector<EnergyPoint>& points) {
  std::vector<std::string> labels;
  for (const EnergyPoint& point : points) labels.push_back(point.label);
  return labels;
}

/// One character for each point: "-" for one without data.
std::string DataOf(const std::vector<EnergyPoint>& points) {
  std::string data;
  for (const EnergyPoint& point : points) data += point.hasData ? '+' : '-';
  return data;
}

using Texts = std::vector<std::string>;

}  // namespace

TEST(MakeSnapshot, HasTheInputsAndTheTimeWithTheZonesOffset) {
  SnapshotInputs inputs = InputsOf({});
  inputs.hostVersion = "1.2.3";
  inputs.machine = "alder";
  inputs.zone = "W. Europe Standard Time";
  inputs.supportState = -1;
  inputs.ledgerProblem = kNoLedger;
  inputs.applicationsProblem = "no store";
  const Snapshot snapshot = MakeSnapshot(inputs);
  EXPECT_EQ(snapshot.hostVersion, "1.2.3");
  EXPECT_EQ(snapshot.machine, "alder");
  EXPECT_EQ(snapshot.zone, "W. Europe Standard Time");
  EXPECT_EQ(snapshot.takenAt, "2026-10-25T11:10:00+01:00");
  EXPECT_EQ(snapshot.takenInstant, kNow);
  EXPECT_EQ(snapshot.supportState, -1);
  EXPECT_EQ(snapshot.ledgerProblem, "no ledger");
  EXPECT_EQ(snapshot.applicationsProblem, "no store");
  EXPECT_FALSE(snapshot.applications.has_value());
}

TEST(MakeSnapshot, PutsEachHourAtItsFirstMoment) {
  const Snapshot snapshot = MakeSnapshot(InputsOf({}));
  EXPECT_EQ(LabelsOf(snapshot.hours), (Texts{"23:00", "0:00", "1:00", "2:00", "3:00", "4:00",
                                             "5:00", "6:00", "7:00", "8:00", "9:00", "10:00"}));
  const Texts begins = BeginsOf(snapshot.hours);
  EXPECT_EQ(begins[0], "2026-10-24T23:00:00+02:00");
  EXPECT_EQ(begins[1], "2026-10-25T00:00:00+02:00");
  EXPECT_EQ(begins[3], "2026-10-25T02:00:00+02:00");
  EXPECT_EQ(begins[4], "2026-10-25T03:00:00+01:00");
  EXPECT_EQ(begins[11], "2026-10-25T10:00:00+01:00");
  EXPECT_EQ(snapshot.hours[11].beginInstant, kNow - 4200);
}

TEST(MakeSnapshot, DistinguishesAnHourOfZeroFromAnHourWithoutData) {
  SnapshotInputs inputs = InputsOf({});
  inputs.yesterdayWh = {{23, 1.5F}, {9, 7.0F}};
  inputs.todayWh = {{0, 0.0F}, {10, 2.25F}, {11, 9.0F}};
  const Snapshot snapshot = MakeSnapshot(inputs);
  EXPECT_EQ(DataOf(snapshot.hours), "++---------+");
  EXPECT_EQ(snapshot.hours[0].energyWh, 1.5);
  EXPECT_EQ(snapshot.hours[1].energyWh, 0.0);
  EXPECT_EQ(snapshot.hours[10].energyWh, 0.0);
  EXPECT_EQ(snapshot.hours[11].energyWh, 2.25);
}

TEST(MakeSnapshot, HasTheSevenDaysBeforeToday) {
  const Snapshot snapshot = MakeSnapshot(InputsOf(
      {{Day(10, 18), 1.0F}, {Day(10, 20), 12.5F}, {Day(10, 24), 0.0F}, {Day(10, 25), 3.5F}}));
  EXPECT_EQ(LabelsOf(snapshot.days), (Texts{"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"}));
  EXPECT_EQ(BeginsOf(snapshot.days).front(), "2026-10-18T00:00:00+02:00");
  EXPECT_EQ(BeginsOf(snapshot.days).back(), "2026-10-24T00:00:00+02:00");
  EXPECT_EQ(DataOf(snapshot.days), "+-+----");
  EXPECT_EQ(snapshot.days[2].energyWh, 12.5);
}

TEST(MakeSnapshot, HasDataForAMonthWithABookedDay) {
  const Snapshot snapshot = MakeSnapshot(InputsOf({{Day(6, 1), 2.0F},
                                                   {Day(7, 31), 0.0F},
                                                   {Day(9, 30), 8.0F},
                                                   {Day(10, 1), 12.5F},
                                                   {Day(10, 25), 3.5F}}));
  EXPECT_EQ(LabelsOf(snapshot.months), (Texts{"May", "Jun", "Jul", "Aug", "Sep", "Oct"}));
  EXPECT_EQ(BeginsOf(snapshot.months),
            (Texts{"2026-05-01T00:00:00+02:00", "2026-06-01T00:00:00+02:00",
                   "2026-07-01T00:00:00+02:00", "2026-08-01T00:00:00+02:00",
                   "2026-09-01T00:00:00+02:00", "2026-10-01T00:00:00+02:00"}));
  EXPECT_EQ(DataOf(snapshot.months), "-+--++");
  EXPECT_EQ(snapshot.months[5].energyWh, 16.0);
}

TEST(MakeSnapshot, LeavesAMonthWithoutDataIfOnlyTheMonthAfterIsBooked) {
  EXPECT_EQ(DataOf(MakeSnapshot(InputsOf({{Day(9, 1), 8.0F}})).months), "----+-");
}

TEST(MakeSnapshot, AveragesOverTodayAndTheSixDaysBeforeAndCountsTheBookedOnes) {
  // On the day after: 17.5 Wh in seven days; 2.5 * 365 * 3 / 1000 / 300 trees.
  SnapshotInputs inputs =
      InputsOf({{Day(10, 19), 100.0F}, {Day(10, 20), 14.0F}, {Day(10, 26), 3.5F}});
  inputs.now = kNow + 86400;
  const Snapshot snapshot = MakeSnapshot(inputs);
  EXPECT_EQ(snapshot.averageDayWh, 2.5);
  EXPECT_NEAR(snapshot.trees, 0.009125, 1e-9);
  EXPECT_EQ(snapshot.bookedDaysOfAverage, 2u);
}

TEST(MakeSnapshot, HasNoBookedDayOfTheAverageIfAllOfThemAreZero) {
  const Snapshot snapshot =
      MakeSnapshot(InputsOf({{Day(10, 18), 100.0F}, {Day(10, 19), 0.0F}, {Day(10, 25), 0.0F}}));
  EXPECT_EQ(snapshot.averageDayWh, 0.0);
  EXPECT_EQ(snapshot.bookedDaysOfAverage, 0u);
}

TEST(MakeSnapshot, FillsTheLedgerUpToTodayWithDaysThatAreNotBooked) {
  const Snapshot snapshot =
      MakeSnapshot(InputsOf({{Day(10, 20), 0.0F}, {Day(10, 22), 8.0F}, {Day(10, 24), 4.0F}}));
  EXPECT_EQ(LabelsOf(snapshot.ledger),
            (Texts{"2026-10-22", "2026-10-23", "2026-10-24", "2026-10-25"}));
  EXPECT_EQ(DataOf(snapshot.ledger), "+-+-");
  EXPECT_EQ(snapshot.ledger[2].begin, "2026-10-24T00:00:00+02:00");
  EXPECT_EQ(snapshot.ledger[2].energyWh, 4.0);
}

TEST(MakeSnapshot, KeepsBookedDaysOfTheFutureWithoutFillingUpToThem) {
  const Snapshot snapshot = MakeSnapshot(InputsOf({{Day(10, 25), 8.0F}, {Day(12, 31), 4.0F}}));
  EXPECT_EQ(LabelsOf(snapshot.ledger), (Texts{"2026-10-25", "2026-12-31"}));
}

TEST(MakeSnapshot, HasAnEmptyLedgerIfNoDayIsBooked) {
  EXPECT_TRUE(MakeSnapshot(InputsOf({{Day(10, 20), 0.0F}})).ledger.empty());
}

TEST(MakeSnapshot, HasZeroForAMonthWhoseSumIsNotFinite) {
  const float most = std::numeric_limits<float>::max();
  const Snapshot snapshot = MakeSnapshot(InputsOf({{Day(10, 1), most}, {Day(10, 2), most}}));
  EXPECT_EQ(snapshot.months[5].energyWh, 0.0);
}
