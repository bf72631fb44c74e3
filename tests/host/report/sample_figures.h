#pragma once

#include <string>
#include <vector>

#include "snapshot/snapshot.h"

// Figures for tests of the page and its charts.
namespace TestSupport {

[[nodiscard]] inline WattleafHost::EnergyPoint Known(const std::string& label, double energyWh,
                                                     const std::string& begin = "") {
  return {label, begin, energyWh, /*hasData=*/true};
}

[[nodiscard]] inline WattleafHost::EnergyPoint Unknown(const std::string& label) {
  return {label, "", 0.0, /*hasData=*/false};
}

[[nodiscard]] inline WattleafHost::ApplicationShare Share(const std::string& name, double percent,
                                                          const std::string& icon = "") {
  return {name, icon, percent};
}

/// Of the last 30 days.
[[nodiscard]] inline WattleafHost::ApplicationShares Shares(
    const std::vector<WattleafHost::ApplicationShare>& largest, double everythingElse) {
  return {largest, everythingElse, 30};
}

/// A supported machine with a point in each series and two applications.
[[nodiscard]] inline WattleafHost::Snapshot SampleSnapshot() {
  WattleafHost::Snapshot snapshot;
  snapshot.hostVersion = "1.2.3";
  snapshot.machine = "NB-0417";
  snapshot.takenAt = "2026-11-22T18:59:01+01:00";
  snapshot.supportState = 1;
  snapshot.averageDayWh = 1000.0;
  snapshot.trees = 3.65;
  snapshot.bookedDaysOfAverage = 6;
  snapshot.hours = {Known("14:00", 15.2, "2026-11-22T14:00:00+01:00")};
  snapshot.days = {Known("Sat", 288.46, "2026-11-21T00:00:00+01:00")};
  snapshot.months = {Known("Nov", 4564.96, "2026-11-01T00:00:00+01:00")};
  snapshot.applications = Shares({Share("Finch Music", 30.0), Share("Otter Chat", 10.0)}, 60.0);
  return snapshot;
}

/// The number of times that `part` is in `text`.
[[nodiscard]] inline int Count(const std::string& text, const std::string& part) {
  int count = 0;
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

}  // namespace TestSupport
