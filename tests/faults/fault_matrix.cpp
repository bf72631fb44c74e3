// Runs scenarios of the shipped library in which one call of its import table fails, each call at
// its 1st, 2nd, ... use, and prints what followed from it.
//
// fault_matrix REPORT EXPECTED POSITIONS [SCENARIO [CALL [POSITION]]]
// REPORT     the file that receives the table; standard output is the library's own
// EXPECTED   the file of expected outcomes (expected_outcomes.txt)
// POSITIONS  the most positions of a call in a scenario: half of them the first ones, the others
//            spread evenly up to the last
// SCENARIO   names of scenarios with commas between them; without it, all of them and the end of
//            the process
// Exit status 0 if each outcome is one of those expected for the call, and nothing was lost.

#include <windows.h>

#include <stdlib.h>
#include <time.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <cstring>
#include <exception>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "base/wide_file.h"
#include "call_failures.h"
#include "data_folder.h"
#include "expected_outcomes.h"
#include "keep_imports.h"
#include "loaded_library.h"
#include "observation.h"
#include "platform/win32/owners.h"
#include "process_end.h"
#include "scenario_paths.h"
#include "scenarios.h"
#include "watchdog.h"

namespace {

using namespace Faults;
using Zq::Gantry::Platform::UniqueModule;
using Zq::Gantry::Server::Services::Wattleaf::UniqueFile;

struct Options {
  std::string report;
  std::string expected;
  std::uint32_t positions;
  std::string scenario;
  std::string call;
  std::uint32_t position = 0;
};

/// All positions, or at most `most`: half of them the first ones, the others spread evenly up to
/// the last.
std::vector<std::uint32_t> PositionsOf(std::uint32_t calls, std::uint32_t most) {
  std::vector<std::uint32_t> positions;
  const std::uint32_t first = calls <= most ? calls : most / 2;
  for (std::uint32_t i = 1; i <= first; ++i) positions.push_back(i);
  const std::uint32_t others = std::min(calls, most) - first;
  for (std::uint32_t i = 1; i <= others; ++i) {
    positions.push_back(first + (calls - first) * i / others);
  }
  return positions;
}

std::string Join(const std::vector<std::uint32_t>& positions) {
  std::string text;
  for (std::size_t i = 0; i < positions.size(); ++i) {
    // "3-7" for five positions in a row.
    std::size_t last = i;
    while (last + 1 < positions.size() && positions[last + 1] == positions[last] + 1) ++last;
    text += (text.empty() ? "" : ",") + std::to_string(positions[i]);
    if (last > i) text += "-" + std::to_string(positions[last]);
    i = last;
  }
  return text;
}

using PositionsByOutcome = std::map<std::string, std::vector<std::uint32_t>>;

class Matrix {
 public:
  Matrix(const Options& options, std::FILE* report)
      : options_(options),
        report_(report),
        expected_(options.expected),
        folders_(PrepareFolders()) {}

  /// Returns the number of findings.
  int Run() {
    // Libraries of the system keep handles open when they are freed with the tested one.
    KeepImportsOf(kTestedLibrary);
    CompareWithShippedLibrary();
    for (const Scenario& scenario : AllScenarios()) {
      if (!IsWanted(scenario.name)) continue;
      const ULONGLONG begun = GetTickCount64();
      const int runsBefore = runs_;
      RunScenario(scenario);
      std::fprintf(report_, "%s: %d runs in %.1f s\n", scenario.name, runs_ - runsBefore,
                   static_cast<double>(GetTickCount64() - begun) / 1000);
    }
    if (options_.scenario.empty()) RunProcesses();
    PrintLeftOut();
    std::fprintf(report_, "%d runs with a failing call, %zu calls, %d findings\n", runs_,
                 reached_.size(), findings_);
    return findings_;
  }

 private:
  /// Without a choice, all scenarios are.
  bool IsWanted(const std::string& name) const {
    return options_.scenario.empty() ||
           ("," + options_.scenario + ",").find("," + name + ",") != std::string::npos;
  }

  /// The tested library differs from the shipped one in its exports only.
  void CompareWithShippedLibrary() {
    const UniqueModule shipped(LoadLibraryW(kShippedLibrary));
    const UniqueModule tested(LoadLibraryW(kTestedLibrary));
    if (!shipped || !tested ||
        NamesOf(ImportsOf(shipped.get())) != NamesOf(ImportsOf(tested.get()))) {
      Finding("the shipped library has other imports");
    }
  }

  static std::set<std::string> NamesOf(const std::vector<Import>& imports) {
    std::set<std::string> names;
    for (const Import& import : imports) names.insert(import.name);
    return names;
  }

  void Finding(const std::string& text) {
    ++findings_;
    std::fprintf(report_, "FINDING %s\n", text.c_str());
    std::fflush(report_);
  }

  void RunScenario(const Scenario& scenario) {
    // Twice before it counts: the first use in a process loads other libraries, which stay.
    for (int i = 0; i < 2; ++i) static_cast<void>(Observe(scenario, folders_, nullptr));
    const Observation undisturbed = Observe(scenario, folders_, nullptr);
    Remember(undisturbed);
    for (const CallFailure& failure : AllCallFailures()) {
      const auto calls = undisturbed.calls.find(failure.name);
      if (calls == undisturbed.calls.end() || calls->second == 0) continue;
      if (!options_.call.empty() && options_.call != failure.name) continue;
      reached_.insert(failure.name);
      RunCall(scenario, failure, calls->second, undisturbed);
    }
    const Observation after = Observe(scenario, folders_, nullptr);
    if (const auto changes = Differences(undisturbed, after); !changes.empty()) {
      Finding(std::string(scenario.name) +
              ": without a failing call, after all others: " + changes);
    }
  }

  void RunCall(const Scenario& scenario, const CallFailure& failure, std::uint32_t calls,
               const Observation& undisturbed) {
    PositionsByOutcome positionsByOutcome;
    for (const std::uint32_t position : PositionsOf(calls, options_.positions)) {
      if (options_.position != 0 && options_.position != position) continue;
      const Fault fault{failure, position};
      const Observation observed = Observe(scenario, folders_, &fault);
      ++runs_;
      std::string outcome = Differences(undisturbed, observed);
      positionsByOutcome[outcome.empty() ? "no difference" : outcome].push_back(position);
    }
    Print(scenario.name, failure, calls, positionsByOutcome);
  }

  /// A process of its own for each run, so only for calls that the scenarios above do not make.
  void RunProcesses() {
    const std::string counts = options_.report + ".counts";
    if (const auto outcome = StartProcessThatEnds("", 0, counts); outcome != "no difference") {
      Finding("end: without a failing call: " + outcome);
    }
    const auto calls = ReadCounts(counts);
    for (const CallFailure& failure : AllCallFailures()) {
      const auto count = calls.find(failure.name);
      if (count == calls.end() || count->second == 0 || reached_.count(failure.name) != 0) continue;
      PositionsByOutcome positionsByOutcome;
      for (const std::uint32_t position : PositionsOf(count->second, options_.positions)) {
        ++runs_;
        positionsByOutcome[StartProcessThatEnds(failure.name, position, counts)].push_back(
            position);
      }
      Print("end", failure, count->second, positionsByOutcome);
    }
    for (const auto& [name, count] : calls) {
      if (count != 0 && HasFailure(name)) reached_.insert(name);
    }
    std::remove(counts.c_str());
  }

  void Print(const std::string& scenario, const CallFailure& failure, std::uint32_t uses,
             const PositionsByOutcome& positionsByOutcome) {
    std::size_t count = 0;
    for (const auto& [outcome, positions] : positionsByOutcome) count += positions.size();
    std::fprintf(report_, "%s | %s | %s | %u uses, %zu positions\n", scenario.c_str(), failure.name,
                 failure.failure, uses, count);
    for (const auto& [outcome, positions] : positionsByOutcome) {
      std::fprintf(report_, "  at %s: %s\n", Join(positions).c_str(), outcome.c_str());
      if (!expected_.Contains(scenario, failure, outcome)) {
        Finding(scenario + ", " + failure.name + " at " + Join(positions) + ": unexpected");
      }
    }
    std::fflush(report_);
  }

  void Remember(const Observation& observation) {
    imports_ = observation.imports;
    for (const auto& [name, calls] : observation.calls) calls_[name] += calls;
  }

  void PrintLeftOut() {
    std::map<std::string, std::vector<std::string>> namesByReason;
    for (const Import& import : imports_) {
      const std::string_view reason = ReasonToLeaveOut(import);
      const bool fails = HasFailure(import.name);
      if (!fails && reason.empty()) {
        Finding("neither a failure nor a reason: " + import.library + " " + import.name);
      } else if (fails && reached_.count(import.name) == 0) {
        const std::string_view why = expected_.WhyNotReached(import.name);
        if (!options_.scenario.empty()) continue;
        if (why.empty()) Finding("no scenario calls " + import.library + " " + import.name);
        namesByReason["not reached: " + std::string(why)].push_back(import.name);
      } else if (!fails) {
        namesByReason[std::string(reason)].push_back(import.name);
      }
    }
    for (const auto& [reason, names] : namesByReason) {
      std::fprintf(report_, "left out: %zu, %s:", names.size(), reason.c_str());
      for (const std::string& name : names) std::fprintf(report_, " %s", name.c_str());
      std::fprintf(report_, "\n");
    }
  }

  static bool HasFailure(const std::string& name) {
    const auto& failures = AllCallFailures();
    return std::any_of(failures.begin(), failures.end(),
                       [&](const CallFailure& row) { return name == row.name; });
  }

  const Options options_;
  std::FILE* const report_;
  const ExpectedOutcomes expected_;
  const PreparedFolders folders_;
  std::vector<Import> imports_;
  std::map<std::string, std::uint32_t> calls_;
  std::set<std::string> reached_;
  int runs_ = 0;
  int findings_ = 0;
};

Options ParseOptions(int argc, char** argv) {
  Options options{argv[1], argv[2], static_cast<std::uint32_t>(std::stoul(argv[3])), {}, {}};
  if (argc > 4) options.scenario = argv[4];
  if (argc > 5) options.call = argv[5];
  if (argc > 6) options.position = static_cast<std::uint32_t>(std::stoul(argv[6]));
  return options;
}

}  // namespace

int main(int argc, char** argv) {
  // The C library reads TZ as a POSIX text. Without TZ it uses the system's zone, which is the one
  // that the program was started in.
  _putenv("TZ=");
  _tzset();
  if (argc == 5 && std::string(argv[1]) == "end") {
    return RunAndEnd(argv[2], static_cast<std::uint32_t>(std::stoul(argv[3])), argv[4]);
  }
  if (argc < 4) {
    std::fprintf(stderr, "usage: fault_matrix REPORT EXPECTED POSITIONS [SCENARIO [CALL [N]]]\n");
    return 2;
  }
  const Options options = ParseOptions(argc, argv);
  const UniqueFile report(std::fopen(options.report.c_str(), "w"));
  if (!report) return 2;
  StartWatchdog(report.get());
  int status = 1;
  try {
    status = Matrix(options, report.get()).Run() == 0 ? 0 : 1;
  } catch (const std::exception& failure) {
    std::fprintf(report.get(), "FINDING the program fails: %s\n", failure.what());
  }
  return status;
}
