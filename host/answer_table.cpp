#include "answer_table.h"

#include "bar_chart.h"
#include "command_titles.h"
#include "printable.h"
#include "ranking.h"
#include "series.h"
#include "service/command_table.h"

namespace WattleafHost {

namespace {

using Zq::Gantry::Server::Services::Wattleaf::Command;

constexpr std::size_t kNumberChars = 2;
constexpr std::size_t kTitleChars = 29;
constexpr std::size_t kStatusChars = 10;
constexpr std::size_t kAnswerChars = 33;

constexpr std::string_view kNoProblems = "[]";

std::string Line(const std::string& number, const std::string& title, const std::string& status,
                 const std::string& answer) {
  return PadLeft(number, kNumberChars) + "  " + PadRight(title, kTitleChars) + "  " +
         PadRight(status, kStatusChars) + "  " + answer + "\n";
}

std::optional<Series> TryReadChart(const Answer& answer) {
  if (answer.status != 0 || ChartTitleOf(answer.number).empty()) return std::nullopt;
  return TryReadSeries(answer.text);
}

bool IsAnswerOf(Command command, const Answer& answer) {
  return answer.status == 0 && answer.number == static_cast<unsigned int>(command);
}

std::string RankingCell(const Ranking& ranking) {
  if (ranking.empty()) return "no applications";
  return std::to_string(ranking.size()) + " applications, " + TwoDigits(ranking.back().share) +
         " to " + TwoDigits(ranking.front().share) + " %";
}

std::string AnswerCell(const Answer& answer) {
  if (answer.status != 0) return StatusMeaning(answer);
  if (const auto series = TryReadChart(answer)) {
    return std::to_string(series->entries.size()) + " values, " + TwoDigits(series->low) + " to " +
           TwoDigits(series->high) + " Wh";
  }
  if (IsAnswerOf(Command::kTopApplications, answer)) {
    if (const auto ranking = TryReadRanking(answer.text)) return RankingCell(*ranking);
  }
  const bool noProblems =
      IsAnswerOf(Command::kErrorsAndWarnings, answer) && answer.text == kNoProblems;
  return noProblems ? answer.text + ", no energy problems" : answer.text;
}

}  // namespace

std::string AnswerTable(const std::vector<Answer>& answers) {
  std::string table = Line("No", "Command", "Status", "Answer");
  table += Line(std::string(kNumberChars, '-'), std::string(kTitleChars, '-'),
                std::string(kStatusChars, '-'), std::string(kAnswerChars, '-'));
  for (const Answer& answer : answers) {
    table += Line(std::to_string(answer.number), std::string(TitleOf(answer.number)),
                  StatusText(answer.status), OneLine(AnswerCell(answer), kAnswerChars));
  }
  return table;
}

std::string AnswerChart(const Answer& answer) {
  const auto series = TryReadChart(answer);
  if (!series) return {};
  return std::string(ChartTitleOf(answer.number)) + " (command " + std::to_string(answer.number) +
         ")\n" + BarChart(*series);
}

std::string AnswerRanking(const Answer& answer, const std::string& days,
                          const IsThere& iconIsThere) {
  if (!IsAnswerOf(Command::kTopApplications, answer)) return {};
  if (const auto ranking = TryReadRanking(answer.text)) {
    return RankingTable(*ranking, days, iconIsThere);
  }
  return "Top 20 applications (command 2), a text that is no list of applications:\n" +
         answer.text + "\n";
}

}  // namespace WattleafHost
