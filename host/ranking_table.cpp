#include "ranking_table.h"

#include "bar_chart.h"
#include "printable.h"

namespace WattleafHost {

namespace {

constexpr std::size_t kRankChars = 4;
constexpr std::size_t kNameChars = 26;
constexpr std::size_t kShareChars = 8;
constexpr std::size_t kIconChars = 7;
constexpr std::size_t kDaysChars = 10;
// With name and share beside it no wider than 80 columns.
constexpr std::size_t kLongestShareBarChars = 40;

std::string Line(const std::string& rank, const std::string& name, const std::string& share,
                 const std::string& icon) {
  return "  " + PadLeft(rank, kRankChars) + "  " + PadRight(name, kNameChars) + "  " +
         PadLeft(share, kShareChars) + "  " + icon + "\n";
}

std::string Rule(std::size_t chars) { return std::string(chars, '-'); }

std::string IconState(const RankedApp& app, const IsThere& iconIsThere) {
  if (app.icon.empty()) return "none";
  return iconIsThere(app.icon) ? "written" : "missing";
}

Series Shares(const Ranking& ranking) {
  Series series;
  for (const RankedApp& app : ranking) {
    series.entries.push_back({OneLine(app.name, kNameChars), app.share});
  }
  return series;
}

std::string Heading(const std::string& days) {
  return "Applications of the last " + OneLine(days, kDaysChars) +
         " days, percent of the energy (command 2)\n";
}

}  // namespace

std::string RankingTable(const Ranking& ranking, const std::string& days,
                         const IsThere& iconIsThere) {
  if (ranking.empty()) return {};
  std::string table = Heading(days) + Line("Rank", "Application", "Share", "Icon") +
                      Line(Rule(kRankChars), Rule(kNameChars), Rule(kShareChars), Rule(kIconChars));
  std::size_t rank = 0;
  for (const RankedApp& app : ranking) {
    table += Line(std::to_string(++rank), OneLine(app.name, kNameChars),
                  TwoDigits(app.share) + " %", IconState(app, iconIsThere));
  }
  return table + "\n" + BarChart(Shares(ranking), kLongestShareBarChars);
}

}  // namespace WattleafHost
