#include "answers/answer_table.h"

#include <string_view>
#include <variant>

#include "answers/bar_chart.h"
#include "text/printable.h"

namespace WattleafHost {

namespace {

// Both tables fit in 80 columns.
constexpr std::size_t kNumberChars = 2;
constexpr std::size_t kTitleChars = 29;
constexpr std::size_t kStatusChars = 10;
constexpr std::size_t kAnswerChars = 33;

constexpr std::size_t kRankChars = 4;
constexpr std::size_t kNameChars = 26;
constexpr std::size_t kShareChars = 8;
constexpr std::size_t kIconChars = 7;
constexpr std::size_t kDaysChars = 10;
constexpr std::size_t kLongestShareBarChars = 40;

constexpr std::string_view kEmptyList = "[]";

std::string Rule(std::size_t chars) { return std::string(chars, '-'); }

std::string AnswerLine(const std::string& number, const std::string& title,
                       const std::string& status, const std::string& answer) {
  return PadLeft(number, kNumberChars) + "  " + PadRight(title, kTitleChars) + "  " +
         PadRight(status, kStatusChars) + "  " + answer + "\n";
}

std::string SeriesCell(const Series& series) {
  return std::to_string(series.entries.size()) + " values, " + TwoDigits(series.low) + " to " +
         TwoDigits(series.high) + " Wh";
}

std::string RankingCell(const Ranking& ranking) {
  if (ranking.empty()) return "no applications";
  return std::to_string(ranking.size()) + " applications, " + TwoDigits(ranking.back().share) +
         " to " + TwoDigits(ranking.front().share) + " %";
}

std::string AnswerCell(const Answer& answer) {
  if (!HasResult(answer)) return StatusMeaning(answer);
  if (const auto* series = std::get_if<Series>(&answer.value)) return SeriesCell(*series);
  if (const auto* ranking = std::get_if<Ranking>(&answer.value)) return RankingCell(*ranking);
  const bool isEmptyList =
      IsResultOf(Command::kErrorsAndWarnings, answer) && answer.text == kEmptyList;
  return isEmptyList ? answer.text + ", never filled by the library" : answer.text;
}

std::string RankingLine(const std::string& rank, const std::string& name, const std::string& share,
                        const std::string& icon) {
  return "  " + PadLeft(rank, kRankChars) + "  " + PadRight(name, kNameChars) + "  " +
         PadLeft(share, kShareChars) + "  " + icon + "\n";
}

std::string RankingHeading(const std::string& days) {
  return "Applications of the last " + OneLine(days, kDaysChars) +
         " days, percent of the energy (command 2)\n" +
         RankingLine("Rank", "Application", "Share", "Icon") +
         RankingLine(Rule(kRankChars), Rule(kNameChars), Rule(kShareChars), Rule(kIconChars));
}

std::string IconState(const RankedApp& app, const FileExists& fileExists) {
  if (app.icon.empty()) return "none";
  return fileExists(app.icon) ? "written" : "missing";
}

Series Shares(const Ranking& ranking) {
  Series series;
  for (const RankedApp& app : ranking) {
    series.entries.push_back({OneLine(app.name, kNameChars), app.share});
  }
  return series;
}

}  // namespace

std::string AnswerTable(const std::vector<Answer>& answers) {
  std::string table =
      AnswerLine("No", "Command", "Status", "Answer") +
      AnswerLine(Rule(kNumberChars), Rule(kTitleChars), Rule(kStatusChars), Rule(kAnswerChars));
  for (const Answer& answer : answers) {
    table += AnswerLine(std::to_string(answer.number), std::string(TitleOf(answer.number)),
                        StatusText(answer.status), OneLine(AnswerCell(answer), kAnswerChars));
  }
  return table;
}

std::string AnswerChart(const Answer& answer) {
  const auto* series = std::get_if<Series>(&answer.value);
  const CommandFacts* facts = FindCommand(answer.number);
  if (series == nullptr || facts == nullptr) return {};
  return std::string(facts->chartTitle) + " (command " + std::to_string(answer.number) + ")\n" +
         BarChart(*series);
}

std::string AnswerRanking(const Answer& answer, const std::string& days,
                          const FileExists& fileExists) {
  if (!IsResultOf(Command::kTopApplications, answer)) return {};
  if (const auto* ranking = std::get_if<Ranking>(&answer.value)) {
    return RankingTable(*ranking, days, fileExists);
  }
  return "Top 20 applications (command 2), a text that is not a list of applications:\n" +
         answer.text + "\n";
}

std::string RankingTable(const Ranking& ranking, const std::string& days,
                         const FileExists& fileExists) {
  if (ranking.empty()) return {};
  std::string table = RankingHeading(days);
  std::size_t rank = 0;
  for (const RankedApp& app : ranking) {
    table += RankingLine(std::to_string(++rank), OneLine(app.name, kNameChars),
                         TwoDigits(app.share) + " %", IconState(app, fileExists));
  }
  return table + "\n" + BarChart(Shares(ranking), kLongestShareBarChars);
}

}  // namespace WattleafHost
