#include "answers/answer_csv.h"

#include "text/csv_text.h"

namespace WattleafHost {

namespace {

/// `icon` is the path of an application's icon.
std::string Row(const Answer& answer, const std::string& position, const std::string& label,
                double value, const std::string& icon = {}) {
  const bool isShare = std::holds_alternative<Ranking>(answer.value);
  return CsvRecord({std::to_string(answer.number), position, CsvField(label), CsvField(value),
                    isShare ? "percent" : "Wh", CsvField(icon)});
}

std::string Rows(const Answer& answer) {
  std::string rows;
  std::size_t position = 0;
  if (const auto* series = std::get_if<Series>(&answer.value)) {
    for (const SeriesEntry& entry : series->entries) {
      rows += Row(answer, std::to_string(++position), entry.label, entry.value);
    }
  } else if (const auto* ranking = std::get_if<Ranking>(&answer.value)) {
    for (const RankedApp& app : *ranking) {
      rows += Row(answer, std::to_string(++position), app.name, app.share, app.icon);
    }
    if (const auto rest = EverythingElse(*ranking)) {
      rows += Row(answer, "", "everything else", *rest);
    }
  }
  return rows;
}

}  // namespace

bool IsTable(unsigned int number) {
  const CommandFacts* facts = FindCommand(number);
  return facts != nullptr &&
         (facts->command == Command::kTopApplications || !facts->chartTitle.empty());
}

std::string AnswersCsv(const std::vector<Answer>& answers) {
  std::string text = CsvRecord({"command", "position", "label", "value", "unit", "icon"});
  for (const Answer& answer : answers) text += Rows(answer);
  return text;
}

}  // namespace WattleafHost
