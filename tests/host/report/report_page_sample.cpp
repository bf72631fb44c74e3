// Writes a page with each kind of figure to standard output: for tests of tools/check-report-page,
// and to look at.

#include <iostream>
#include <string>
#include <vector>

#include "report/report_page.h"

using namespace WattleafHost;

namespace {

struct Value {
  const char* label;
  double energyWh;
  bool hasData = true;
};

std::vector<EnergyPoint> Points(const std::vector<Value>& values) {
  std::vector<EnergyPoint> points;
  for (const Value& value : values) {
    EnergyPoint point;
    point.label = value.label;
    point.begin = "2026-11-22T00:00:00+01:00";
    point.energyWh = value.energyWh;
    point.hasData = value.hasData;
    points.push_back(point);
  }
  return points;
}

/// Six of 100/9 %, a name of markup, one of 10,000 characters, and a third for everything else.
ApplicationShares SampleShares() {
  ApplicationShares shares;
  shares.days = 30;
  const std::string names[] = {
      "Finch Music",          "Otter & Sons", "Heron", "Plover", "<script>alert(1)</script>",
      std::string(10000, 'x')};
  for (const std::string& name : names) {
    ApplicationShare share;
    share.name = name;
    share.percent = 100.0 / 9;
    shares.largest.push_back(share);
  }
  shares.everythingElsePercent = 100.0 / 3;
  return shares;
}

}  // namespace

int main() {
  Snapshot snapshot;
  snapshot.hostVersion = "1.0.0";
  snapshot.machine = "NOTEBOOK";
  snapshot.takenAt = "2026-11-22T12:30:00+01:00";
  snapshot.supportState = 1;
  snapshot.averageDayWh = 209.891129;
  snapshot.trees = 0.766103;
  snapshot.bookedDaysOfAverage = 6;
  snapshot.hours = Points({{"0:00", 0.0, false}, {"1:00", 0.0}, {"2:00", 0.02}, {"3:00", 15.2}});
  snapshot.days = Points({{"Sat", 288.46}, {"Sun", 74.93}});
  snapshot.months = Points({{"Oct", 4564.96}, {"Nov", 3356.07}});
  snapshot.applications = SampleShares();
  std::cout << ReportPage(snapshot, [](const std::string&) { return std::string(); });
}
