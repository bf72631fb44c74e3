#include "snapshot/snapshot.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "base/local_calendar.h"
#include "ledger/sample_energy.h"
#include "ledger/series.h"
#include "text/local_moment.h"

namespace WattleafHost {

namespace {

using std::chrono::days;
using std::chrono::sys_days;
using namespace Zq::Gantry::Server::Services::Wattleaf;

constexpr int kHoursPerDay = 24;
constexpr unsigned int kDaysOfAverage = 7;

/// The figure of an entry as the command's answer has it.
EnergyPoint PointOf(const SeriesEntry& entry, std::int64_t beginInstant, bool hasData) {
  const float energyWh = FiniteOrZero(entry.energyWh);
  return {entry.label, IsoTime(beginInstant), static_cast<double>(energyWh), hasData, beginInstant};
}

/// The dates of the booked days.
using BookedDays = std::map<sys_days, float>;

BookedDays FindBookedDays(const PowerLedger& ledger) {
  BookedDays booked;
  for (const auto& [day, energyWh] : ledger) {
    if (energyWh != 0.0F) booked.insert_or_assign(DateOf(day), energyWh);
  }
  return booked;
}

/// Whether the library finds the day in the ledger, with a value.
bool IsBooked(const DateTime& day, const PowerLedger& ledger) {
  const auto entry = ledger.find(day);
  return entry != ledger.end() && entry->second != 0.0F;
}

/// The entries are those of HourSeries, from the eleventh hour before the last full one to that.
std::vector<EnergyPoint> Hours(const DateTime& now, const SnapshotInputs& inputs) {
  const sys_days today = DateOf(now);
  const sys_days yesterday = DateOf(ShiftKeepingHour(now, -kSecondsPerDay));
  const Series series = HourSeries(now.tm_hour, inputs.yesterdayWh, inputs.todayWh);
  std::vector<EnergyPoint> points;
  int hour = now.tm_hour - static_cast<int>(series.size());
  for (const SeriesEntry& entry : series) {
    const bool isToday = hour >= 0;
    const int shown = isToday ? hour : hour + kHoursPerDay;
    const auto& sums = isToday ? inputs.todayWh : inputs.yesterdayWh;
    const std::int64_t begin = FirstInstantOf(isToday ? today : yesterday, shown);
    points.push_back(PointOf(entry, begin, sums.contains(shown)));
    ++hour;
  }
  return points;
}

std::vector<EnergyPoint> Days(const DateTime& today, const PowerLedger& ledger) {
  const Series series = DaySeries(today, ledger);
  std::vector<EnergyPoint> points;
  DateTime day = ShiftKeepingHour(today, -static_cast<int>(series.size()) * kSecondsPerDay);
  for (const SeriesEntry& entry : series) {
    points.push_back(PointOf(entry, FirstInstantOf(DateOf(day), 0), IsBooked(day, ledger)));
    day = ShiftKeepingHour(day, kSecondsPerDay);
  }
  return points;
}

std::vector<EnergyPoint> Months(const DateTime& today, const DateTime& now,
                                const PowerLedger& ledger, const BookedDays& booked) {
  const Series series = MonthSeries(today, now, ledger);
  std::vector<EnergyPoint> points;
  const std::chrono::year_month_day date(DateOf(today));
  auto month = date.year() / date.month() - std::chrono::months(series.size() - 1);
  for (const SeriesEntry& entry : series) {
    const sys_days first = month / 1;
    month += std::chrono::months(1);
    const auto firstBooked = booked.lower_bound(first);
    const bool hasData = firstBooked != booked.end() && firstBooked->first < sys_days(month / 1);
    points.push_back(PointOf(entry, FirstInstantOf(first, 0), hasData));
  }
  return points;
}

std::vector<EnergyPoint> LedgerDays(BookedDays booked, sys_days today) {
  const BookedDays onlyBooked = booked;
  if (!booked.empty()) {
    for (sys_days day = booked.begin()->first; day <= today; day += days(1)) {
      booked.emplace(day, 0.0F);
    }
  }
  std::vector<EnergyPoint> points;
  for (const auto& [day, energyWh] : booked) {
    points.push_back(
        PointOf({IsoDate(day), energyWh}, FirstInstantOf(day, 0), onlyBooked.contains(day)));
  }
  return points;
}

unsigned int CountBookedDaysOfAverage(DateTime day, const PowerLedger& ledger) {
  unsigned int count = 0;
  for (unsigned int i = 0; i < kDaysOfAverage; ++i) {
    if (IsBooked(day, ledger)) ++count;
    day = ShiftKeepingHour(day, -kSecondsPerDay);
  }
  return count;
}

}  // namespace

Snapshot MakeSnapshot(const SnapshotInputs& inputs) {
  const DateTime now = LocalTimeOf(inputs.now);
  DateTime today = now;
  today.tm_hour = 0;
  today.tm_min = 0;
  today.tm_sec = 0;
  const BookedDays booked = FindBookedDays(inputs.ledger);
  const float averageWh = AverageDayEnergyWh(today, inputs.ledger);

  Snapshot snapshot;
  snapshot.hostVersion = inputs.hostVersion;
  snapshot.machine = inputs.machine;
  snapshot.takenAt = IsoTime(inputs.now);
  snapshot.supportState = inputs.supportState;
  snapshot.averageDayWh = static_cast<double>(averageWh);
  snapshot.trees = static_cast<double>(TreesSaved(averageWh));
  snapshot.hours = Hours(now, inputs);
  snapshot.days = Days(today, inputs.ledger);
  snapshot.months = Months(today, now, inputs.ledger, booked);
  snapshot.ledger = LedgerDays(booked, DateOf(today));
  snapshot.applications = inputs.applications;
  snapshot.zone = inputs.zone;
  snapshot.takenInstant = inputs.now;
  snapshot.bookedDaysOfAverage = CountBookedDaysOfAverage(today, inputs.ledger);
  snapshot.ledgerProblem = inputs.ledgerProblem;
  snapshot.applicationsProblem = inputs.applicationsProblem;
  return snapshot;
}

}  // namespace WattleafHost
