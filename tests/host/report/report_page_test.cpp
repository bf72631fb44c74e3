#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <string>

#include "host/report/sample_figures.h"
#include "report/report_page.h"

using namespace std::string_literals;
using namespace WattleafHost;
using testing::HasSubstr;
using testing::Not;
using TestSupport::Count;
using TestSupport::Known;
using TestSupport::SampleSnapshot;
using TestSupport::Share;
using TestSupport::Shares;

namespace {

constexpr std::size_t kMostPageBytes = 200 * 1000;
const std::string kPng = "\x89PNG\r\n\x1A\n"s;

std::string NoIcon(const std::string&) { return {}; }

std::string Page(const Snapshot& snapshot) { return ReportPage(snapshot, &NoIcon); }

std::string PageWith(const ApplicationShares& applications) {
  Snapshot snapshot = SampleSnapshot();
  snapshot.applications = applications;
  return Page(snapshot);
}

/// The text from `begin` up to `end`, without both.
std::string Between(const std::string& text, const std::string& begin, const std::string& end) {
  const auto first = text.find(begin);
  if (first == std::string::npos) return "no " + begin;
  const auto start = first + begin.size();
  return text.substr(start, text.find(end, start) - start);
}

/// A page all of whose texts are `text`, with as many points and applications as there can be.
std::string PageOf(const std::string& text) {
  Snapshot snapshot;
  snapshot.hostVersion = snapshot.machine = snapshot.takenAt = text;
  snapshot.ledgerProblem = text;
  snapshot.hours.assign(12, Known(text, -1.7e308, text));
  snapshot.days.assign(7, Known(text, -1.7e308, text));
  snapshot.months.assign(6, Known(text, -1.7e308, text));
  snapshot.applications = Shares(std::vector<ApplicationShare>(20, Share(text, 2.5, "icon")), 50.0);
  return Page(snapshot);
}

}  // namespace

TEST(HostReportPage, NamesTheMachineAndTheTime) {
  const std::string page = Page(SampleSnapshot());
  EXPECT_THAT(page, HasSubstr("<title>Energy report of NB-0417</title>"));
  EXPECT_THAT(page, HasSubstr("<bdi>NB-0417</bdi>"));
  EXPECT_THAT(page, HasSubstr("<time datetime=\"2026-11-22T18:59:01+01:00\">"
                              "22 November 2026, 18:59 (UTC+01:00)</time>"));
  EXPECT_THAT(page, HasSubstr("wattleaf_host 1.2.3."));
}

TEST(HostReportPage, ForbidsEverythingButInlineStyleAndImagesAsData) {
  const std::string page = Page(SampleSnapshot());
  EXPECT_EQ(Between(page, "http-equiv=\"Content-Security-Policy\" content=\"", "\""),
            "default-src 'none'; style-src 'unsafe-inline'; img-src data:; base-uri 'none'; "
            "form-action 'none'");
  EXPECT_THAT(page, Not(HasSubstr("<script")));
  EXPECT_THAT(page, Not(HasSubstr("<link")));
  EXPECT_THAT(page, Not(HasSubstr("://")));
}

TEST(HostReportPage, NamesTheStateOfSupport) {
  const std::map<int, std::string> states = {
      {1, "state good\">Supported<"},
      {0, "state bad\">Not supported<"},
      {-1, "state warn\">Firmware update required<"},
      {7, "state warn\">Unknown<"},
  };
  for (const auto& [state, text] : states) {
    Snapshot snapshot = SampleSnapshot();
    snapshot.supportState = state;
    EXPECT_THAT(Page(snapshot), HasSubstr("<span id=\"support\" class=\"" + text)) << state;
  }
}

TEST(HostReportPage, HasTheAverageAndTheTreesWithTheirFormula) {
  const std::string page = Page(SampleSnapshot());
  EXPECT_THAT(page, HasSubstr("<span id=\"average\">1,000.00</span> <span class=\"unit\">Wh"));
  EXPECT_THAT(page, HasSubstr("Booked: 6 of 7 days."));
  EXPECT_THAT(page, HasSubstr("<span id=\"trees\">3.65</span></dd>"));
  EXPECT_EQ(Between(page, "<span id=\"formula\">", "</span>"),
            "1,000.00 Wh &times; 365 &times; 3 &divide; 1000 &divide; 300");
  EXPECT_THAT(page, HasSubstr("<dd>1,000.00 Wh &times; 365 &times; 3 &divide; 1000 &divide; 300 = "
                              "3.65. 365 days"));
}

TEST(HostReportPage, DistinguishesAnAverageWithoutDataFromZero) {
  Snapshot snapshot = SampleSnapshot();
  snapshot.averageDayWh = snapshot.trees = 0.0;
  EXPECT_THAT(Page(snapshot), HasSubstr("<span id=\"average\">0.00</span>"));
  snapshot.bookedDaysOfAverage = 0;
  EXPECT_THAT(Page(snapshot), HasSubstr("<span id=\"average\">no data</span></dd>"));
  EXPECT_THAT(Page(snapshot), HasSubstr("<span id=\"trees\">no data</span></dd>"));
}

TEST(HostReportPage, SaysWhyThereAreNoBookedDays) {
  EXPECT_THAT(Page(SampleSnapshot()), Not(HasSubstr("No booked days")));
  Snapshot snapshot = SampleSnapshot();
  snapshot.ledgerProblem = "ledger not readable";
  EXPECT_THAT(Page(snapshot), HasSubstr("No booked days: ledger not readable."));
}

TEST(HostReportPage, HasAChartAndATableOfEachSeries) {
  const std::string page = Page(SampleSnapshot());
  EXPECT_THAT(page, HasSubstr("<h2 id=\"hours\">Last 12 hours"));
  EXPECT_THAT(page, HasSubstr("<h2 id=\"days\">Last 7 days"));
  EXPECT_THAT(page, HasSubstr("<h2 id=\"months\">Last 6 months"));
  EXPECT_EQ(Count(page, "<svg class=\"chart\" role=\"img\""), 3);
  const std::string hours = Between(page, "<table id=\"hours-table\"", "</table>");
  EXPECT_THAT(hours, HasSubstr("<tr><th scope=\"row\">14:00</th><td>2026-11-22 14:00</td>"
                               "<td>15.20</td></tr>"));
  const std::string days = Between(page, "<table id=\"days-table\"", "</table>");
  EXPECT_THAT(days, HasSubstr("<th scope=\"row\">Sat</th><td>2026-11-21 00:00</td><td>288.46"));
  const std::string months = Between(page, "<table id=\"months-table\"", "</table>");
  EXPECT_THAT(months, HasSubstr("<th scope=\"row\">Nov</th><td>2026-11-01 00:00</td><td>4,564.96"));
}

TEST(HostReportPage, SaysNoDataInTheTables) {
  Snapshot snapshot = SampleSnapshot();
  snapshot.days[0].hasData = false;
  EXPECT_THAT(Between(Page(snapshot), "<table id=\"days-table\"", "</table>"),
              HasSubstr("<td>no data</td>"));
}

TEST(HostReportPage, HasARowForEachApplicationAndOneForEverythingElse) {
  const std::string page = Page(SampleSnapshot());
  EXPECT_THAT(page, HasSubstr("Applications of the last 30 days"));
  const std::string rows = Between(page, "<tbody role=\"rowgroup\">\n", "</tbody>");
  EXPECT_EQ(Count(rows, "<tr "), 3);
  EXPECT_THAT(rows, HasSubstr("class=\"rank\">1</td>"));
  EXPECT_THAT(rows, HasSubstr("<bdi>Finch Music</bdi>"));
  EXPECT_THAT(rows, HasSubstr("class=\"share\">30.00 %</td>"));
  EXPECT_THAT(rows, HasSubstr("class=\"rank\">2</td>"));
  EXPECT_THAT(rows, HasSubstr("class=\"share\">10.00 %</td>"));
  const std::string rest = Between(rows, "<tr role=\"row\" class=\"rest\">", "</tr>");
  EXPECT_THAT(rest, HasSubstr("class=\"rank\"></td>"));
  EXPECT_THAT(rest, HasSubstr("Everything else"));
  EXPECT_THAT(rest, HasSubstr("class=\"share\">60.00 %</td>"));
  EXPECT_THAT(page, HasSubstr("Together</th>"));
}

TEST(HostReportPage, DrawsSharesInProportionToTheLargestRow) {
  const std::string page = Page(SampleSnapshot());
  EXPECT_THAT(page, HasSubstr("width=\"50%\" height=\"10\""));
  EXPECT_THAT(page, HasSubstr("width=\"16.67%\" height=\"10\""));
  EXPECT_THAT(page, HasSubstr("width=\"100%\" height=\"10\" rx"));
}

TEST(HostReportPage, HasSharesThatAddUpAfterRounding) {
  const double third = 100.0 / 3;
  const std::string page = PageWith(Shares({Share("a", third), Share("b", third)}, third));
  EXPECT_EQ(Count(page, ">33.34 %<"), 1);
  EXPECT_EQ(Count(page, ">33.33 %<"), 2);
  EXPECT_EQ(Count(page, ">100.00 %<"), 1);
}

TEST(HostReportPage, HasNoSumOfSharesThatDoNotAddUp) {
  const std::string page = PageWith(Shares({Share("a", 5.0)}, 5.0));
  EXPECT_EQ(Count(page, ">5.00 %<"), 2);
  EXPECT_THAT(page, Not(HasSubstr("100.00 %")));
}

TEST(HostReportPage, DrawsNoBarForNegativeSharesAndWhatIsNoNumber) {
  const std::string negative = PageWith(Shares({Share("a", 120.0)}, -20.0));
  EXPECT_THAT(negative, HasSubstr(">-20.00 %<"));
  EXPECT_THAT(negative, HasSubstr("width=\"0%\" height=\"10\""));
  const std::string noNumber =
      PageWith(Shares({Share("a", std::numeric_limits<double>::quiet_NaN())},
                      std::numeric_limits<double>::infinity()));
  EXPECT_EQ(Count(noNumber, ">- %<"), 2);
  EXPECT_EQ(Count(noNumber, "width=\"0%\" height=\"10\""), 2);
}

TEST(HostReportPage, SaysWhyThereAreNoApplications) {
  Snapshot snapshot = SampleSnapshot();
  snapshot.applications.reset();
  snapshot.applicationsProblem = "store not readable";
  const std::string page = Page(snapshot);
  EXPECT_THAT(page, HasSubstr("No figures: store not readable."));
  EXPECT_THAT(page, Not(HasSubstr("applications-table")));
}

TEST(HostReportPage, HasIconsAsData) {
  Snapshot snapshot = SampleSnapshot();
  snapshot.applications = Shares(
      {Share("a", 50.0, "C:\\a.png"), Share("b", 20.0, "C:\\b.txt"), Share("c", 10.0)}, 20.0);
  std::vector<std::string> read;
  const std::string page = ReportPage(snapshot, [&](const std::string& path) {
    read.push_back(path);
    return path == "C:\\a.png" ? kPng : "text"s;
  });
  EXPECT_THAT(page, HasSubstr("<img class=\"icon\" alt=\"\" width=\"24\" height=\"24\" "
                              "src=\"data:image/png;base64,iVBORw0KGgo=\"><bdi>a</bdi>"));
  EXPECT_THAT(page, HasSubstr("<span class=\"icon\"></span><bdi>b</bdi>"));
  EXPECT_THAT(page, HasSubstr("<span class=\"icon\"></span><bdi>c</bdi>"));
  EXPECT_EQ(Count(page, "<img"), 1);
  EXPECT_THAT(read, testing::ElementsAre("C:\\a.png", "C:\\b.txt"));
}

TEST(HostReportPage, EscapesHostileTextsEverywhere) {
  const std::string harmless = PageOf("x");
  const std::string hostile = PageOf("<img src=x onerror=alert(1)>\"'&");
  EXPECT_EQ(Count(hostile, "<"), Count(harmless, "<"));
  EXPECT_EQ(Count(hostile, "\""), Count(harmless, "\""));
  EXPECT_THAT(hostile, Not(HasSubstr("<img")));
}

TEST(HostReportPage, GivesANameToApplicationsWithoutOne) {
  EXPECT_THAT(PageWith(Shares({Share("", 50.0)}, 50.0)), HasSubstr("<bdi>(no name)</bdi>"));
  EXPECT_THAT(PageWith(Shares({Share("   ", 50.0)}, 50.0)), HasSubstr("<bdi>(no name)</bdi>"));
}

TEST(HostReportPage, HasAtMost200KilobytesWithTheLongestTexts) {
  EXPECT_LT(PageOf(std::string(10000, '"')).size(), kMostPageBytes);
  EXPECT_LT(PageOf(std::string(10000, '\x01')).size(), kMostPageBytes);
}

TEST(HostReportPage, IsWholeWithoutAnyData) {
  const std::string page = Page(Snapshot());
  EXPECT_THAT(page, HasSubstr("<span id=\"average\">no data</span>"));
  EXPECT_EQ(Count(page, "No data: none."), 6);
  EXPECT_THAT(page, testing::EndsWith("</html>\n"));
}

TEST(HostReportPage, PrintsNeitherNaNNorInfinity) {
  Snapshot snapshot = SampleSnapshot();
  snapshot.averageDayWh = std::numeric_limits<double>::quiet_NaN();
  snapshot.trees = std::numeric_limits<double>::infinity();
  snapshot.hours[0].energyWh = std::numeric_limits<double>::infinity();
  const std::string page = Page(snapshot);
  EXPECT_THAT(page, HasSubstr("<span id=\"average\">-</span>"));
  EXPECT_THAT(page, HasSubstr("<span id=\"trees\">-</span>"));
  for (const char* text : {">nan", ">-nan", " nan", ">inf", ">-inf", " inf", "\"inf", "\"nan"}) {
    EXPECT_THAT(page, Not(HasSubstr(text)));
  }
}
