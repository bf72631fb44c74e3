#include "serve/subcommands.h"

#include <algorithm>
#include <memory>
#include <variant>

#include "answers/answer_csv.h"
#include "answers/answer_table.h"
#include "answers/json_report.h"
#include "base/local_calendar.h"
#include "command_line/console.h"
#include "command_line/places.h"
#include "serve/loaded_service.h"
#include "serve/sleep_watch.h"
#include "simulated_calls.h"
#include "snapshot/machine.h"
#include "text/local_moment.h"

namespace WattleafHost {

namespace {

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

void NoticeDelay(const ServeOnceRequest& request) {
  Notice(request.realTime
             ? "the worker starts after its 90 seconds (--real-time)"
             : "the worker's 90 seconds and its sleep of a day are skipped (--real-time waits)");
}

void NoticeEnd(PassEnd end, unsigned int limitSeconds) {
  if (end == PassEnd::kWorkerEnded) {
    Notice("no pass: the worker has ended, since collection did not start; the log may say why");
  } else if (end == PassEnd::kStillRunning) {
    Notice("no pass within " + std::to_string(limitSeconds) +
           " seconds; only the commands that do not wait for it are run");
  }
}

/// The replaced entries of the library's import table.
struct Replacements {
  Replacements(HMODULE module, const ServeOnceRequest& request, const Options& options)
      : simulated(module, options.simulateCalls),
        watch(module,
              request.realTime ? SleepWatch::Delay::kRealTime : SleepWatch::Delay::kSkipped) {}

  Standin::SimulatedCalls simulated;
  SleepWatch watch;
};

/// Starts the service. Kept on purpose: the worker runs until the process ends, so the functions
/// that it calls are never restored.
Replacements& StartService(LoadedService& service, const ServeOnceRequest& request,
                           const Options& options) {
  auto replacements = std::make_unique<Replacements>(service.Module(), request, options);
  NoticeDelay(request);
  service.Start();
  return *replacements.release();
}

PassEnd WaitForOnePass(SleepWatch& watch, const ServeOnceRequest& request) {
  ProgressLine progress("waiting for the pass");
  return watch.WaitForPass(std::chrono::seconds(request.limitSeconds),
                           [&progress](std::chrono::seconds elapsed) { progress.Update(elapsed); });
}

/// Without an input of the user, command 2 gets the icon folder and the days.
std::string DefaultInput(unsigned int number, const Options& options) {
  if (number != NumberOf(Command::kTopApplications)) return {};
  return RankingInput(options.iconFolder, options.days);
}

/// All commands; only those that do not wait for a pass if one is still running.
std::vector<Answer> RunCommands(LoadedService& service, PassEnd end, const Options& options) {
  std::vector<Answer> answers;
  for (const CommandFacts& facts : kCommandFacts) {
    if (end == PassEnd::kStillRunning && facts.waitsForPass) continue;
    const unsigned int number = NumberOf(facts.command);
    answers.push_back(service.Run(number, DefaultInput(number, options)));
  }
  return answers;
}

/// A report without answers and pass.
Report StartReport(const LoadedService& service, const Standin::SimulatedCalls& simulated,
                   const Options& options) {
  Report report;
  report.version = WATTLEAF_HOST_VERSION;
  report.time = IsoTime(Zq::Gantry::Server::Services::Wattleaf::CurrentInstant());
  report.zone = ZoneName();
  report.library = service.LibraryPath();
  for (const auto& call : simulated.InPlace()) {
    report.simulatedCalls.push_back({call.name, call.reason});
  }
  report.dataFolder = kDataFolder;
  report.iconFolder = options.iconFolder;
  report.days = options.days;
  report.log = LogFile();
  return report;
}

std::string SimulatedText(const Report& report) {
  std::string names;
  for (const SimulatedRow& row : report.simulatedCalls) {
    names += (names.empty() ? "" : "\n                ") + row.name;
  }
  return names.empty() ? "none" : names;
}

void PrintReport(const Report& report) {
  Print("WattleafService, asked by wattleaf_host " + report.version + "\n");
  Print("  library       " + report.library + "\n");
  Print("  pass          " + report.pass + "\n");
  Print("  simulated     " + SimulatedText(report) + "\n\n");
  Print(AnswerTable(report.answers));
  const std::string days = std::to_string(report.days);
  for (const Answer& answer : report.answers) {
    const std::string details = AnswerChart(answer) + AnswerRanking(answer, days, &IsFile);
    if (!details.empty()) Print("\n" + details);
  }
  Print("\n  data folder   " + report.dataFolder + "\n");
  Print("  icons         " + report.iconFolder + "\n");
  Print("  log           " + (report.log.empty() ? "standard error" : report.log) + "\n");
}

/// The result as chart or table; empty for a text that is neither, which has been printed already.
std::string Details(const Answer& answer, const std::string& input) {
  const auto* ranking = std::get_if<Ranking>(&answer.value);
  if (ranking == nullptr) return AnswerChart(answer);
  return RankingTable(*ranking, DaysOfInput(input), &IsFile);
}

void NoticeStatus(const Answer& answer) {
  Notice("command " + std::to_string(answer.number) + ": status " + StatusText(answer.status) +
         ", " + StatusMeaning(answer));
}

void PrintAnswer(const Answer& answer, const std::string& input) {
  if (!HasResult(answer)) return NoticeStatus(answer);
  Print(answer.text + "\n");
  const std::string details = Details(answer, input);
  if (!details.empty()) Print("\n" + details);
  const CommandFacts* facts = FindCommand(answer.number);
  if (facts != nullptr && facts->readsLedger) {
    Notice("command " + std::to_string(answer.number) +
           ": the ledger in memory is empty without a pass; serve-once fills it");
  }
}

void PrintCsv(const std::vector<Answer>& answers) {
  Print(AnswersCsv(answers));
  for (const Answer& answer : answers) {
    if (!IsTable(answer.number)) continue;
    if (!HasResult(answer)) {
      NoticeStatus(answer);
    } else if (std::holds_alternative<std::monostate>(answer.value)) {
      Notice("command " + std::to_string(answer.number) + ": a text that is not a table");
    }
  }
}

}  // namespace

int Run(const ServeOnceRequest& request, const Options& options) {
  LoadedService service;
  Replacements& replacements = StartService(service, request, options);
  const PassEnd end = WaitForOnePass(replacements.watch, request);
  NoticeEnd(end, request.limitSeconds);

  Report report = StartReport(service, replacements.simulated, options);
  report.pass = PassText(end);
  report.answers = RunCommands(service, end, options);
  if (options.json) {
    Print(ToJson(report) + "\n");
  } else if (request.csv) {
    PrintCsv(report.answers);
  } else {
    PrintReport(report);
  }
  if (end != PassEnd::kCompleted) return kNoPass;
  const bool haveResults = std::all_of(report.answers.begin(), report.answers.end(), &HasResult);
  return haveResults ? kDone : kCommandFailed;
}

int Run(const CommandRequest& request, const Options& options) {
  LoadedService service;
  const Standin::SimulatedCalls simulated(service.Module(), options.simulateCalls);
  const std::string input = request.input.value_or(DefaultInput(request.number, options));
  const Answer answer = service.Run(request.number, input);
  if (options.json) {
    Report report = StartReport(service, simulated, options);
    report.answers = {answer};
    Print(ToJson(report) + "\n");
  } else if (request.csv) {
    PrintCsv({answer});
  } else {
    PrintAnswer(answer, input);
  }
  return HasResult(answer) ? kDone : kCommandFailed;
}

}  // namespace WattleafHost
