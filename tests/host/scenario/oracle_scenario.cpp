// Takes the service through passes on several days and writes what it shows of itself after each.
//
// oracle_scenario OUTPUT_FOLDER PASS...
// PASS is the instant of a pass, in seconds since 1970, and after commas instants at which the
// commands are asked besides. The folder gets, for each pass i from 1, as "pass<i>-...": the ledger
// file, the names of the data folder, the collector's truth as the pass found it, and for each
// instant the texts of the commands.
//
// The collector is the stand-in, told by the environment; WATTLEAF_COLLECTOR_NOW is the instant of
// the first pass and WATTLEAF_COLLECTOR_TRUTH is set.

#include <windows.h>

#include <stdlib.h>
#include <time.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "played_calls.h"
#include "service_session.h"
#include "worker_gate.h"

namespace {

namespace fs = std::filesystem;
using Scenario::ServiceSession;
using Scenario::WorkerGate;

constexpr wchar_t kDataFolder[] = L"C:\\ProgramData\\ZQ\\TelemetryDataCollector\\PCMCollector";

std::vector<std::int64_t> ParsePass(const std::string& text) {
  std::vector<std::int64_t> instants;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, ',');) instants.push_back(std::stoll(part));
  if (instants.empty()) throw std::invalid_argument("a pass without an instant");
  return instants;
}

void WriteText(const fs::path& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text;
  if (!file.flush()) throw std::runtime_error("cannot write " + path.string());
}

void AdvanceCollector(std::int64_t now) {
  const HMODULE collector = GetModuleHandleW(L"TelemetryZQXWrapper.dll");
  const auto found = reinterpret_cast<void (*)()>(GetProcAddress(collector, "AdvanceCollector"));
  if (found == nullptr) throw std::runtime_error("the collector is not the stand-in");
  reinterpret_cast<void (*)(long long)>(found)(now);
}

std::string NamesInDataFolder() {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(kDataFolder)) {
    names.push_back(entry.path().filename().string() + "\n");
  }
  std::sort(names.begin(), names.end());
  std::string text;
  for (const std::string& name : names) text += name;
  return text;
}

void WriteAnswers(ServiceSession& service, const std::string& start, std::int64_t now) {
  WorkerGate::SetClock(now);
  for (const unsigned int command : {1U, 3U, 4U, 5U, 6U}) {
    WriteText(start + "at" + std::to_string(now) + "-command" + std::to_string(command) + ".txt",
              service.Ask(command));
  }
}

void WriteOutcome(ServiceSession& service, const std::string& start,
                  const std::vector<std::int64_t>& instants) {
  const fs::path data = kDataFolder;
  fs::copy_file(data / L"PowerConsumption.json", start + "ledger.json");
  fs::copy_file(_wgetenv(L"WATTLEAF_COLLECTOR_TRUTH"), start + "truth.json");
  WriteText(start + "names.txt", NamesInDataFolder());
  for (const std::int64_t now : instants) WriteAnswers(service, start, now);
}

void Run(const std::string& folder, const std::vector<std::string>& passes) {
  ServiceSession service;
  const Standin::PlayedCalls played(service.Library(), /*enabled=*/true);
  // Kept until the process ends, like the worker that waits in it.
  static WorkerGate& gate = *new WorkerGate(service.Library());
  static_cast<void>(gate);

  for (std::size_t i = 0; i < passes.size(); ++i) {
    const std::vector<std::int64_t> instants = ParsePass(passes[i]);
    WorkerGate::SetClock(instants.front());
    if (i == 0) {
      service.Start();
    } else {
      AdvanceCollector(instants.front());
      WorkerGate::LetNextPassIn();
    }
    WorkerGate::WaitForPass();
    WriteOutcome(service, folder + "\\pass" + std::to_string(i + 1) + "-", instants);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "usage: oracle_scenario OUTPUT_FOLDER PASS...\n");
    return 2;
  }
  // The C library reads TZ as a POSIX text and ignores the zone database; without TZ it asks the
  // system, whose zone is the one that the program was started in.
  _putenv("TZ=");
  _tzset();
  try {
    Run(argv[1], std::vector<std::string>(argv + 2, argv + argc));
    return 0;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "oracle_scenario: %s\n", failure.what());
    return 1;
  }
}
