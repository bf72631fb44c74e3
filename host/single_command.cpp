#include "single_command.h"

#include "answer_table.h"
#include "command_input.h"
#include "command_titles.h"
#include "console.h"
#include "exit_status.h"
#include "loaded_service.h"
#include "places.h"
#include "service_report.h"

namespace WattleafHost {

namespace {

/// What the text alone does not show at a glance; a text that cannot be read has been printed.
std::string Details(const Answer& answer, const std::string& input) {
  if (!TryReadRanking(answer.text)) return AnswerChart(answer);
  return AnswerRanking(answer, DaysOfRequest(input), &IsFile);
}

void PrintForPeople(const Answer& answer, const Options& options) {
  const std::string name = "command " + std::to_string(answer.number) + ": ";
  if (answer.status != 0) {
    Notice(name + "status " + StatusText(answer.status) + ", " + StatusMeaning(answer));
    return;
  }
  Print(answer.text + "\n");
  const std::string details = Details(answer, InputOf(answer.number, options));
  if (!details.empty()) Print("\n" + details);
  if (ReadsLedger(answer.number)) {
    Notice(name + "the ledger in memory is empty without a pass; serve-once fills it");
  }
}

}  // namespace

int RunSingleCommand(const Options& options) {
  LoadedService service;
  const Standin::SimulatedCalls simulated(service.Module(), options.simulateCalls);
  const Answer answer = service.Ask(options.number, InputOf(options.number, options));
  if (options.json) {
    Report report = StartReport(service, simulated.InPlace(), options);
    report.answers = {answer};
    Print(ToJson(report) + "\n");
  } else {
    PrintForPeople(answer, options);
  }
  return answer.status == 0 ? kDone : kCommandFailed;
}

}  // namespace WattleafHost
