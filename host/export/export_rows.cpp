#include "export/export_rows.h"

#include <cmath>
#include <utility>

namespace WattleafHost {

namespace {

constexpr char kNotBooked[] = "not booked";
constexpr char kNoSamples[] = "no counted samples";
constexpr char kNotFinite[] = "not a finite number";
constexpr std::string_view kWattHours = "Wh";
constexpr std::string_view kPercent = "percent";

/// Sets the value, or the reason for its absence; `missing` is empty if the value is known.
ExportRow WithValue(ExportRow row, double value, std::string missing) {
  if (missing.empty() && !std::isfinite(value)) missing = kNotFinite;
  if (missing.empty()) row.value = value;
  row.missing = std::move(missing);
  return row;
}

ExportRow Figure(std::string_view kind, std::string_view unit) {
  ExportRow row;
  row.kind = kind;
  row.unit = unit;
  return row;
}

void AddPoints(std::string_view kind, const std::vector<EnergyPoint>& points,
               const std::string& reason, std::vector<ExportRow>& rows) {
  for (const EnergyPoint& point : points) {
    ExportRow row = Figure(kind, kWattHours);
    row.begin = point.begin;
    row.label = point.label;
    rows.push_back(WithValue(std::move(row), point.energyWh, point.hasData ? "" : reason));
  }
}

void AddShare(ExportRow row, unsigned int days, double percent, std::vector<ExportRow>& rows) {
  row.days = days;
  rows.push_back(WithValue(std::move(row), percent, ""));
}

void AddShares(const Snapshot& snapshot, std::vector<ExportRow>& rows) {
  if (!snapshot.applications) {
    rows.push_back(WithValue(Figure("application", kPercent), 0.0, snapshot.applicationsProblem));
    return;
  }
  const ApplicationShares& shares = *snapshot.applications;
  unsigned int rank = 0;
  for (const ApplicationShare& share : shares.largest) {
    ExportRow row = Figure("application", kPercent);
    row.label = std::to_string(++rank);
    row.name = share.name;
    AddShare(std::move(row), shares.days, share.percent, rows);
  }
  AddShare(Figure("everythingElse", kPercent), shares.days, shares.everythingElsePercent, rows);
}

}  // namespace

std::vector<ExportRow> ExportRows(const Snapshot& snapshot) {
  const std::string notBooked =
      snapshot.ledgerProblem.empty() ? kNotBooked : snapshot.ledgerProblem;
  const std::string noAverage = snapshot.bookedDaysOfAverage == 0 ? notBooked : "";
  std::vector<ExportRow> rows;
  rows.push_back(WithValue(Figure("platformSupport", "state"), snapshot.supportState, ""));
  rows.push_back(WithValue(Figure("averageDay", kWattHours), snapshot.averageDayWh, noAverage));
  rows.push_back(WithValue(Figure("treesSaved", "trees"), snapshot.trees, noAverage));
  AddPoints("ledgerDay", snapshot.ledger, notBooked, rows);
  AddPoints("hour", snapshot.hours, kNoSamples, rows);
  AddPoints("day", snapshot.days, notBooked, rows);
  AddPoints("month", snapshot.months, notBooked, rows);
  AddShares(snapshot, rows);
  return rows;
}

}  // namespace WattleafHost
