// Writes a page with each kind of figure to standard output: for tests of tools/check-report-page,
// and to look at.

#include <iostream>
#include <string>

#include "host/report/sample_figures.h"
#include "report/report_page.h"

using TestSupport::Known;
using TestSupport::Share;

int main() {
  WattleafHost::Snapshot snapshot = TestSupport::SampleSnapshot();
  snapshot.machine = "NOTEBOOK";
  snapshot.averageDayWh = 209.891129;
  snapshot.trees = 0.766103;
  snapshot.hours = {TestSupport::Unknown("0:00"), Known("1:00", 0.0), Known("2:00", 0.02),
                    Known("3:00", 15.2)};
  snapshot.days = {Known("Sat", 288.46), Known("Sun", 74.93)};
  snapshot.months = {Known("Oct", 4564.96), Known("Nov", 3356.07)};
  // A name of markup, one of 10,000 characters, and a third for everything else.
  constexpr double kPercent = 100.0 / 9;
  snapshot.applications = TestSupport::Shares(
      {Share("Finch Music", kPercent), Share("Otter & Sons", kPercent), Share("Heron", kPercent),
       Share("Plover", kPercent), Share("<script>alert(1)</script>", kPercent),
       Share(std::string(10000, 'x'), kPercent)},
      100.0 / 3);
  std::cout << WattleafHost::ReportPage(snapshot, [](const std::string&) { return std::string(); });
}
