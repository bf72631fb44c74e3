// Prints metrics with a sample of each name, and of applications with hostile names.

#include <cstdio>
#include <string>

#include "export/metrics_text.h"
#include "host/export/hostile_names.h"

int main() {
  using WattleafHost::EnergyPoint;
  WattleafHost::Snapshot snapshot;
  snapshot.hostVersion = "1.2.3";
  snapshot.takenInstant = 1795353600;
  snapshot.supportState = 1;
  snapshot.averageDayWh = 2.5;
  snapshot.trees = 0.5;
  snapshot.bookedDaysOfAverage = 1;
  const EnergyPoint point{"", "", 1.5, true, 1795302000};
  snapshot.ledger.assign(1, point);
  snapshot.hours.assign(12, point);
  snapshot.days.assign(7, point);
  snapshot.months.assign(6, point);
  snapshot.applications.emplace();
  snapshot.applications->days = 30;
  snapshot.applications->everythingElsePercent = 50.0;
  for (const std::string& name : TestSupport::kHostileNames) {
    snapshot.applications->largest.push_back({name, "", 5.0});
  }
  const std::string text = WattleafHost::MetricsText(snapshot);
  std::fwrite(text.data(), 1, text.size(), stdout);
  return 0;
}
