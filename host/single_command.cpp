#include "single_command.h"

#include "answer_table.h"
#include "command_titles.h"
#include "console.h"
#include "exit_status.h"
#include "loaded_service.h"
#include "service_report.h"

namespace WattleafHost {

namespace {

void PrintForPeople(const Answer& answer) {
  const std::string name = "command " + std::to_string(answer.number) + ": ";
  if (answer.status != 0) {
    Notice(name + "status " + StatusText(answer.status) + ", " + StatusMeaning(answer));
    return;
  }
  Print(answer.text + "\n");
  const std::string chart = AnswerChart(answer);
  if (!chart.empty()) Print("\n" + chart);
  if (ReadsLedger(answer.number)) {
    Notice(name + "the ledger in memory is empty without a pass; serve-once fills it");
  }
}

}  // namespace

int RunSingleCommand(const Options& options) {
  LoadedService service;
  const Standin::PlayedCalls played(service.Module(), options.playCalls);
  const Answer answer = service.Ask(options.number, options.input);
  if (options.json) {
    Report report = StartReport(service, played.InPlace());
    report.answers = {answer};
    Print(ToJson(report) + "\n");
  } else {
    PrintForPeople(answer);
  }
  return answer.status == 0 ? kDone : kCommandFailed;
}

}  // namespace WattleafHost
