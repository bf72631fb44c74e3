#include "answer_table.h"

#include "bar_chart.h"
#include "command_titles.h"
#include "printable.h"
#include "series.h"

namespace WattleafHost {

namespace {

constexpr std::size_t kNumberChars = 2;
constexpr std::size_t kTitleChars = 29;
constexpr std::size_t kStatusChars = 10;
constexpr std::size_t kAnswerChars = 33;

std::string Line(const std::string& number, const std::string& title, const std::string& status,
                 const std::string& answer) {
  return PadLeft(number, kNumberChars) + "  " + PadRight(title, kTitleChars) + "  " +
         PadRight(status, kStatusChars) + "  " + answer + "\n";
}

std::optional<Series> TryReadChart(const Answer& answer) {
  if (answer.status != 0 || ChartTitleOf(answer.number).empty()) return std::nullopt;
  return TryReadSeries(answer.text);
}

std::string AnswerCell(const Answer& answer) {
  if (answer.status != 0) return StatusMeaning(answer);
  if (const auto series = TryReadChart(answer)) {
    return std::to_string(series->entries.size()) + " values, " + TwoDigits(series->low) + " to " +
           TwoDigits(series->high) + " Wh";
  }
  return answer.text;
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

}  // namespace WattleafHost
