#include "serve_once.h"

#include <algorithm>
#include <memory>

#include "answer_table.h"
#include "command_input.h"
#include "console.h"
#include "exit_status.h"
#include "loaded_service.h"
#include "places.h"
#include "service_report.h"
#include "sleep_watch.h"

namespace WattleafHost {

namespace {

const std::vector<unsigned int> kAllCommands = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
/// Those that wait for no lock, for a pass that has not ended.
const std::vector<unsigned int> kCommandsWithoutLock = {8, 10};

std::string PassText(PassEnd end) {
  switch (end) {
    case PassEnd::kCompleted:
      return "completed";
    case PassEnd::kWorkerEnded:
      return "not started";
    case PassEnd::kStillRunning:
      return "still running";
  }
  return {};
}

void NoticeDelay(const Options& options) {
  Notice(options.realTime
             ? "the worker starts after its 90 seconds (--real-time)"
             : "the worker's 90 seconds and its sleep of a day are skipped (--real-time waits)");
}

void NoticeEnd(PassEnd end, unsigned int limitSeconds) {
  if (end == PassEnd::kWorkerEnded) {
    Notice("no pass: the worker has ended, since collection did not start; the log may say why");
  } else if (end == PassEnd::kStillRunning) {
    Notice("no pass within " + std::to_string(limitSeconds) +
           " seconds; only the commands that do not wait for it are asked");
  }
}

/// What stands in the library's import table.
struct Replacements {
  Replacements(HMODULE module, const Options& options)
      : simulated(module, options.simulateCalls),
        watch(module,
              options.realTime ? SleepWatch::Delay::kRealTime : SleepWatch::Delay::kSkipped) {}

  Standin::SimulatedCalls simulated;
  SleepWatch watch;
};

/// Starts the service. Its worker lives until the process ends, so what it calls is never taken
/// away again.
Replacements& StartService(LoadedService& service, const Options& options) {
  auto replacements = std::make_unique<Replacements>(service.Module(), options);
  NoticeDelay(options);
  service.Start();
  return *replacements.release();
}

PassEnd LetOnePassHappen(SleepWatch& watch, const Options& options) {
  ProgressLine progress("waiting for the pass");
  return watch.WaitForPass(std::chrono::seconds(options.limitSeconds),
                           [&progress](std::chrono::seconds elapsed) { progress.Update(elapsed); });
}

std::string SimulatedText(const Report& report) {
  std::string names;
  for (const SimulatedRow& row : report.simulatedCalls) {
    names += (names.empty() ? "" : "\n                ") + row.name;
  }
  return names.empty() ? "none" : names;
}

std::vector<Answer> AskEach(LoadedService& service, const std::vector<unsigned int>& numbers,
                            const Options& options) {
  std::vector<Answer> answers;
  for (const unsigned int number : numbers) {
    answers.push_back(service.Ask(number, InputOf(number, options)));
  }
  return answers;
}

void PrintDetails(const Report& report) {
  const std::string days = std::to_string(report.days);
  for (const Answer& answer : report.answers) {
    const std::string details = AnswerChart(answer) + AnswerRanking(answer, days, &IsFile);
    if (!details.empty()) Print("\n" + details);
  }
}

void PrintForPeople(const Report& report) {
  Print("WattleafService, asked by wattleaf_host " + report.version + "\n");
  Print("  library       " + report.library + "\n");
  Print("  pass          " + report.pass + "\n");
  Print("  simulated     " + SimulatedText(report) + "\n\n");
  Print(AnswerTable(report.answers));
  PrintDetails(report);
  Print("\n  data folder   " + report.dataFolder + "\n");
  Print("  icons         " + report.iconFolder + "\n");
  Print("  log           " + (report.log.empty() ? "standard error" : report.log) + "\n");
}

int ExitStatus(PassEnd end, const std::vector<Answer>& answers) {
  if (end != PassEnd::kCompleted) return kNoPass;
  return std::all_of(answers.begin(), answers.end(), IsAsExpected) ? kDone : kCommandFailed;
}

}  // namespace

int ServeOnce(const Options& options) {
  LoadedService service;
  Replacements& replacements = StartService(service, options);
  const PassEnd end = LetOnePassHappen(replacements.watch, options);
  NoticeEnd(end, options.limitSeconds);

  Report report = StartReport(service, replacements.simulated.InPlace(), options);
  report.pass = PassText(end);
  report.answers = AskEach(
      service, end == PassEnd::kStillRunning ? kCommandsWithoutLock : kAllCommands, options);
  if (options.json) {
    Print(ToJson(report) + "\n");
  } else {
    PrintForPeople(report);
  }
  return ExitStatus(end, report.answers);
}

}  // namespace WattleafHost
