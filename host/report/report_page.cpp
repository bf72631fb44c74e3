#include "report/report_page.h"

#include "report/report_shares.h"
#include "report/report_style.h"
#include "report/svg_chart.h"
#include "text/figure_text.h"
#include "text/html_text.h"
#include "text/moment_text.h"

namespace WattleafHost {

namespace {

constexpr std::size_t kFieldChars = 64;
constexpr std::size_t kLabelChars = 16;

/// One of the three charts, with everything that differs among them.
struct ChartSection {
  const char* id;
  const char* title;
  /// The heading of the first column of its table.
  const char* unitOfTime;
  const char* note;
  const std::vector<EnergyPoint>& points;
};

std::string Field(const std::string& text) { return HtmlText(text, kFieldChars); }

std::string Head(const Snapshot& snapshot) {
  return R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; style-src 'unsafe-inline'; img-src data:; base-uri 'none'; form-action 'none'">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="color-scheme" content="light dark">
<meta name="referrer" content="no-referrer">
<title>Energy report of )" +
         Field(snapshot.machine) + "</title>\n<style>\n" + std::string(kReportStyle) +
         "</style>\n</head>\n";
}

std::string Header(const Snapshot& snapshot) {
  return "<header>\n<h1>Energy report</h1>\n<p class=\"subject\"><bdi>" + Field(snapshot.machine) +
         "</bdi> <span class=\"moment\"><time datetime=\"" + Field(snapshot.takenAt) + "\">" +
         Field(LongMoment(snapshot.takenAt)) + "</time></span></p>\n</header>\n";
}

struct SupportText {
  const char* cssClass;
  const char* state;
  const char* meaning;
};

SupportText SupportTextOf(int state) {
  if (state == 1)
    return {"good", "Supported", "The firmware of this machine supports the measurement."};
  if (state == 0) {
    return {"bad", "Not supported", "This machine does not support the measurement."};
  }
  if (state == -1) {
    return {"warn", "Firmware update required", "The measurement needs newer firmware."};
  }
  return {"warn", "Unknown", "The library returned a state without a meaning."};
}

std::string Card(const std::string& name, const std::string& figure, const std::string& note) {
  return "<div class=\"card\"><dt>" + name + "</dt>\n<dd class=\"figure\">" + figure +
         "</dd>\n<dd class=\"note\">" + note + "</dd></div>\n";
}

std::string TreesFormula(const Snapshot& snapshot) {
  return FigureText(snapshot.averageDayWh) + " Wh &times; 365 &times; 3 &divide; 1000 &divide; 300";
}

/// A figure, or the words "no data" if no day of the average is booked: then it is 0.0.
std::string LedgerFigure(const Snapshot& snapshot, const std::string& id, double figure,
                         const std::string& unit) {
  const bool isKnown = snapshot.bookedDaysOfAverage > 0;
  return "<span id=\"" + id + "\">" + (isKnown ? FigureText(figure) : "no data") + "</span>" +
         (isKnown && !unit.empty() ? " <span class=\"unit\">" + unit + "</span>" : "");
}

std::string AverageNote(const Snapshot& snapshot) {
  const std::string days = std::to_string(snapshot.bookedDaysOfAverage);
  return "Today and the six days before, divided by 7. Booked: " + days + " of 7 days.";
}

std::string LedgerProblem(const Snapshot& snapshot) {
  if (snapshot.ledgerProblem.empty()) return {};
  return "<p class=\"problem\">No booked days: " + Field(snapshot.ledgerProblem) + ".</p>\n";
}

std::string Cards(const Snapshot& snapshot) {
  const SupportText support = SupportTextOf(snapshot.supportState);
  return "<section aria-labelledby=\"summary\">\n<h2 id=\"summary\" "
         "class=\"unseen\">Summary</h2>\n" +
         LedgerProblem(snapshot) + "<dl class=\"cards\">\n" +
         Card("Average day", LedgerFigure(snapshot, "average", snapshot.averageDayWh, "Wh"),
              AverageNote(snapshot)) +
         Card("Trees for three years of use", LedgerFigure(snapshot, "trees", snapshot.trees, ""),
              "<span id=\"formula\">" + TreesFormula(snapshot) + "</span>") +
         Card("Platform",
              "<span id=\"support\" class=\"state " + std::string(support.cssClass) + "\">" +
                  support.state + "</span>",
              support.meaning) +
         "</dl>\n</section>\n";
}

std::string TableRow(const EnergyPoint& point) {
  const std::string energy =
      HasValue(point) ? "<td>" + FigureText(point.energyWh) + "</td>" : "<td>no data</td>";
  return "<tr><th scope=\"row\">" + HtmlText(point.label, kLabelChars) + "</th><td>" +
         HtmlText(ShortMoment(point.begin), kFieldChars) + "</td>" + energy + "</tr>\n";
}

std::string TableOf(const ChartSection& section) {
  std::string rows;
  for (const EnergyPoint& point : section.points) rows += TableRow(point);
  return "<details><summary>Show as a table</summary>\n<table id=\"" + std::string(section.id) +
         "-table\" class=\"figures\"><caption class=\"unseen\">" + section.title +
         "</caption>\n<thead><tr><th scope=\"col\">" + section.unitOfTime +
         "</th><th scope=\"col\">Begins</th><th scope=\"col\">Energy, Wh</th></tr></thead>\n"
         "<tbody>\n" +
         rows + "</tbody></table>\n</details>\n";
}

std::string SectionOf(const ChartSection& section) {
  const std::string id = section.id;
  return "<section class=\"panel " + id + "\" aria-labelledby=\"" + id + "\">\n<h2 id=\"" + id +
         "\">" + section.title + " <span class=\"unit\">Wh</span></h2>\n<p class=\"note\">" +
         section.note + "</p>\n" +
         SvgChart(id, std::string(section.title) + ", energy in watt-hours", section.points) +
         "<p class=\"note summary\">" + ChartSummary(section.points) + "</p>\n" + TableOf(section) +
         "</section>\n";
}

std::string Charts(const Snapshot& snapshot) {
  const ChartSection sections[] = {
      {"hours", "Last 12 hours", "Hour", "Full hours; the running hour is not included.",
       snapshot.hours},
      {"days", "Last 7 days", "Day", "Booked days; today is not included.", snapshot.days},
      {"months", "Last 6 months", "Month", "Sums of booked days; the last month is still running.",
       snapshot.months},
  };
  std::string html = "<div class=\"charts\">\n";
  for (const ChartSection& section : sections) html += SectionOf(section);
  return html + "</div>\n";
}

std::string Method(const Snapshot& snapshot) {
  return R"(<section class="panel method" aria-labelledby="method">
<h2 id="method">How these figures are made</h2>
<dl class="terms">
<div><dt>Energy</dt>
<dd>Power samples of the notebook, added up over time, in watt-hours (Wh). Each day is booked in a ledger; days and months come from there, hours from the samples themselves.</dd></div>
<div><dt>Average day</dt>
<dd>The sum of the booked energy of today and of the six days before it, divided by 7. Today counts with what is booked so far, a day that is not booked adds nothing, and the divisor stays 7. So this is not the mean of the chart of days.</dd></div>
<div><dt>Trees for three years of use</dt>
<dd>)" + TreesFormula(snapshot) +
         " = " + FigureText(snapshot.trees) +
         R"(. 365 days a year for 3 years are taken as the life of a notebook, 1000 turns watt-hours into kilowatt-hours, and 300 kilowatt-hours are taken to stand for one tree. All four are fixed numbers; where the 300 comes from is not documented.</dd></div>
<div><dt>No data and zero</dt>
<dd>A hatched area with the words &ldquo;no data&rdquo; means that no sample counted or no day is booked; it is not a measured zero, which is printed as &ldquo;0&rdquo;. Averages and sums treat missing data as zero.</dd></div>
<div><dt>Applications</dt>
<dd>Shares of the energy that the energy report of Windows assigns to programs. &ldquo;Everything else&rdquo; is what the twenty largest leave of 100 %: other applications, programs without a known name, and Windows itself.</dd></div>
</dl>
</section>
)";
}

std::string Footer(const Snapshot& snapshot) {
  return "<footer><p>Written by wattleaf_host " + Field(snapshot.hostVersion) +
         ". The page loads nothing: no scripts, no network.</p></footer>\n";
}

}  // namespace

std::string ReportPage(const Snapshot& snapshot, const IconReader& readIcon) {
  return Head(snapshot) + "<body>\n" + Header(snapshot) + "<main>\n" + Cards(snapshot) +
         Charts(snapshot) + SharesSection(snapshot, readIcon) + Method(snapshot) + "</main>\n" +
         Footer(snapshot) + "</body>\n</html>\n";
}

}  // namespace WattleafHost
