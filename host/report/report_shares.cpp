#include "report/report_shares.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "text/figure_text.h"
#include "text/html_text.h"
#include "text/png_data_uri.h"
#include "text/rounded_shares.h"

namespace WattleafHost {

namespace {

constexpr std::size_t kNameChars = 60;
constexpr std::size_t kProblemChars = 80;
constexpr const char* kNoIcon = "<span class=\"icon\"></span>";

/// The shares as they are printed: those of the applications, then that of everything else.
struct PrintedShares {
  std::vector<double> percents;
  std::vector<std::string> texts;
  /// False for hostile data, whose shares are printed as they are.
  bool addUp = false;
};

PrintedShares PrintShares(const ApplicationShares& applications) {
  PrintedShares printed;
  for (const ApplicationShare& share : applications.largest) {
    printed.percents.push_back(share.percent);
  }
  printed.percents.push_back(applications.everythingElsePercent);
  const auto rounded = TryRoundShares(printed.percents);
  printed.addUp = rounded.has_value();
  for (std::size_t i = 0; i < printed.percents.size(); ++i) {
    if (rounded) printed.percents[i] = static_cast<double>((*rounded)[i]) / 100.0;
    printed.texts.push_back(FigureText(printed.percents[i]) + " %");
  }
  return printed;
}

/// The width of each bar, in percent of the widest; 0 for a share that is not above zero.
std::vector<double> BarWidths(const std::vector<double>& percents) {
  const auto size = [](double percent) {
    return std::isfinite(percent) ? std::max(percent, 0.0) : 0.0;
  };
  double largest = 0.0;
  for (const double percent : percents) largest = std::max(largest, size(percent));
  std::vector<double> widths;
  widths.reserve(percents.size());
  for (const double percent : percents) {
    widths.push_back(largest > 0.0 ? size(percent) / largest * 100.0 : 0.0);
  }
  return widths;
}

// The roles repeat what the elements are, because narrow pages arrange the rows as grids, and then
// browsers no longer treat the elements as a table.

std::string BarCell(double width) {
  return R"(<td role="cell" class="meter"><svg width="100%" height="10" aria-hidden="true">)"
         R"(<rect class="bar" width=")" +
         LengthText(width) + R"(%" height="10" rx="2"/></svg></td>)";
}

std::string Row(const std::string& cssClass, const std::string& rank, const std::string& name,
                double width, const std::string& share) {
  return R"(<tr role="row" class=")" + cssClass + R"("><td role="cell" class="rank">)" + rank +
         R"(</td><th role="rowheader" scope="row"><span class="app">)" + name + "</span></th>" +
         BarCell(width) + R"(<td role="cell" class="share">)" + share + "</td></tr>\n";
}

std::string Icon(const ApplicationShare& share, const IconReader& readIcon) {
  if (share.icon.empty()) return kNoIcon;
  const std::string uri = PngDataUri(readIcon(share.icon));
  if (uri.empty()) return kNoIcon;
  return "<img class=\"icon\" alt=\"\" width=\"24\" height=\"24\" src=\"" + uri + "\">";
}

std::string Name(const ApplicationShare& share) {
  const std::string name = HtmlText(share.name, kNameChars);
  const bool isBlank = name.find_first_not_of(' ') == std::string::npos;
  return "<bdi>" + (isBlank ? "(no name)" : name) + "</bdi>";
}

std::string Rows(const ApplicationShares& applications, const PrintedShares& printed,
                 const IconReader& readIcon) {
  const std::vector<double> widths = BarWidths(printed.percents);
  const std::size_t count = applications.largest.size();
  std::string rows;
  for (std::size_t i = 0; i < count; ++i) {
    const ApplicationShare& share = applications.largest[i];
    rows += Row("one", std::to_string(i + 1), Icon(share, readIcon) + Name(share), widths[i],
                printed.texts[i]);
  }
  return rows + Row("rest", "", std::string(kNoIcon) + "Everything else", widths[count],
                    printed.texts[count]);
}

constexpr const char* kTableHead =
    R"(<table id="applications-table" class="shares" role="table">
<caption class="unseen">Applications by their share of the energy</caption>
<thead role="rowgroup"><tr role="row"><th role="columnheader" scope="col" class="rank"><span class="unseen">Rank</span></th><th role="columnheader" scope="col">Application</th><td role="cell" class="meter"></td><th role="columnheader" scope="col" class="share">Share</th></tr></thead>
<tbody role="rowgroup">
)";

constexpr const char* kTogether =
    R"(<tfoot role="rowgroup"><tr role="row"><td role="cell" class="rank"></td><th role="rowheader" scope="row">Together</th><td role="cell" class="meter"></td><td role="cell" class="share">100.00 %</td></tr></tfoot>
)";

std::string Table(const ApplicationShares& applications, const IconReader& readIcon) {
  const PrintedShares printed = PrintShares(applications);
  return kTableHead + Rows(applications, printed, readIcon) + "</tbody>\n" +
         (printed.addUp ? kTogether : "") + "</table>\n";
}

std::string Heading(const std::string& title) {
  return "<section class=\"panel applications\" aria-labelledby=\"applications\">\n"
         "<h2 id=\"applications\">" +
         title + "</h2>\n";
}

}  // namespace

std::string SharesSection(const Snapshot& snapshot, const IconReader& readIcon) {
  if (!snapshot.applications) {
    return Heading("Applications") + "<p class=\"problem\">No figures: " +
           HtmlText(snapshot.applicationsProblem, kProblemChars) + ".</p>\n</section>\n";
  }
  const std::string days = std::to_string(snapshot.applications->days);
  return Heading("Applications of the last " + days + " days") +
         "<p class=\"note\">Share of the energy that Windows reports for programs. Shares are "
         "rounded so that they add up.</p>\n" +
         Table(*snapshot.applications, readIcon) + "</section>\n";
}

}  // namespace WattleafHost
