// Takes the service through passes on several days and writes its files and answers after each.
//
// oracle_scenario OUTPUT_FOLDER ICON_FOLDER PASS...
// PASS has three lists, with ";" between them and "," within them:
//   instants in seconds since 1970: that of the pass, then others at which commands are also run;
//   DAYS@INSTANT, a run of command 2;
//   NAME=VALUE, a setting WATTLEAF_POWERCFG_<NAME> of the energy tool from this pass on.
// OUTPUT_FOLDER gets the device path of C: and, for each pass i from 1, as "pass<i>-...": the
// ledger file, the store of application energy and the tool's report, where they exist, the names
// of the data folder, the collector's plain samples before the pass, and the texts of the commands.
//
// The collector is the stand-in, which environment variables configure; WATTLEAF_COLLECTOR_NOW is
// the instant of the first pass and WATTLEAF_COLLECTOR_TRUTH is set.

#include <windows.h>

#include <stdlib.h>
#include <time.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "service/command_table.h"
#include "service_session.h"
#include "simulated_calls.h"
#include "worker_gate.h"

namespace {

namespace fs = std::filesystem;
using Scenario::ServiceSession;
using Scenario::WorkerGate;
using Zq::Gantry::Server::Services::Wattleaf::Command;
using Zq::Gantry::Server::Services::Wattleaf::NumberOf;

constexpr wchar_t kDataFolder[] = L"C:\\ProgramData\\ZQ\\TelemetryDataCollector\\PCMCollector";

struct RankingQuestion {
  std::string days;
  std::int64_t instant;
};

struct Setting {
  std::string name;
  std::string value;
};

struct Pass {
  std::vector<std::int64_t> instants;  // the pass's own first
  std::vector<RankingQuestion> questions;
  std::vector<Setting> settings;
};

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
  return parts;
}

/// The parts before and after the separator.
std::pair<std::string, std::string> Halves(const std::string& text, char separator) {
  const auto at = text.find(separator);
  if (at == std::string::npos) throw std::invalid_argument("has not two parts: " + text);
  return {text.substr(0, at), text.substr(at + 1)};
}

Pass ParsePass(const std::string& text) {
  const std::vector<std::string> lists = Split(text, ';');
  if (lists.size() != 3) throw std::invalid_argument("a pass has three lists: " + text);
  Pass pass;
  for (const std::string& part : Split(lists[0], ',')) pass.instants.push_back(std::stoll(part));
  for (const std::string& part : Split(lists[1], ',')) {
    const auto [days, instant] = Halves(part, '@');
    pass.questions.push_back({days, std::stoll(instant)});
  }
  for (const std::string& part : Split(lists[2], ',')) {
    const auto [name, value] = Halves(part, '=');
    pass.settings.push_back({name, value});
  }
  if (pass.instants.empty()) throw std::invalid_argument("a pass without an instant");
  return pass;
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

std::string DevicePathOfSystemDrive() {
  std::array<char, 1024> path{};
  QueryDosDeviceA("C:", path.data(), static_cast<DWORD>(path.size()));
  return path.data();
}

/// The tool inherits the environment from the service; it copies its report to `truth`.
void PrepareTool(const Pass& pass, const std::string& truth) {
  const auto set = [](const std::string& name, const std::string& value) {
    SetEnvironmentVariableA(("WATTLEAF_POWERCFG_" + name).c_str(), value.c_str());
  };
  set("NOW", std::to_string(pass.instants.front()));
  set("TRUTH", truth);
  for (const Setting& setting : pass.settings) set(setting.name, setting.value);
}

void CopyIfPresent(const fs::path& from, const fs::path& to) {
  if (fs::exists(from)) fs::copy_file(from, to);
}

void WriteAnswers(ServiceSession& service, const std::string& start, std::int64_t now) {
  WorkerGate::SetClock(now);
  for (const Command figure : {Command::kDailyAverage, Command::kTreesSaved, Command::kLastHours,
                               Command::kLastDays, Command::kLastMonths}) {
    const unsigned int command = NumberOf(figure);
    WriteText(start + "at" + std::to_string(now) + "-command" + std::to_string(command) + ".txt",
              service.Run(command));
  }
}

void WriteRanking(ServiceSession& service, const std::string& start, const std::string& icons,
                  const RankingQuestion& question) {
  WorkerGate::SetClock(question.instant);
  const auto answer =
      service.TryRun(NumberOf(Command::kTopApplications), icons + "?" + question.days);
  WriteText(start + "at" + std::to_string(question.instant) + "-days" + question.days + ".txt",
            answer.value_or("no answer"));
}

void WriteOutcome(ServiceSession& service, const std::string& start, const std::string& icons,
                  const Pass& pass) {
  const fs::path data = kDataFolder;
  fs::copy_file(data / L"PowerConsumption.json", start + "ledger.json");
  CopyIfPresent(data / L"Powerlog.json", start + "store.json");
  fs::copy_file(_wgetenv(L"WATTLEAF_COLLECTOR_TRUTH"), start + "truth.json");
  WriteText(start + "names.txt", NamesInDataFolder());
  for (const std::int64_t now : pass.instants) WriteAnswers(service, start, now);
  for (const auto& question : pass.questions) WriteRanking(service, start, icons, question);
}

void Run(const std::string& folder, const std::string& icons,
         const std::vector<std::string>& passes) {
  ServiceSession service;
  const Standin::SimulatedCalls fake(service.Library(), /*enabled=*/true);
  // Never destroyed: the worker waits in it until the process ends.
  static WorkerGate& gate = *new WorkerGate(service.Library());
  static_cast<void>(gate);

  WriteText(folder + "\\device.txt", DevicePathOfSystemDrive());
  for (std::size_t i = 0; i < passes.size(); ++i) {
    const Pass pass = ParsePass(passes[i]);
    const std::string start = folder + "\\pass" + std::to_string(i + 1) + "-";
    WorkerGate::SetClock(pass.instants.front());
    PrepareTool(pass, start + "report.xml");
    if (i == 0) {
      service.Start();
    } else {
      AdvanceCollector(pass.instants.front());
      WorkerGate::LetNextPassIn();
    }
    WorkerGate::WaitForPass();
    WriteOutcome(service, start, icons, pass);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) {
    std::fprintf(stderr, "usage: oracle_scenario OUTPUT_FOLDER ICON_FOLDER PASS...\n");
    return 2;
  }
  // The C library reads TZ as a POSIX text. Without TZ it uses the system's zone, which is the one
  // that the program was started in.
  _putenv("TZ=");
  _tzset();
  try {
    Run(argv[1], argv[2], std::vector<std::string>(argv + 3, argv + argc));
    return 0;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "oracle_scenario: %s\n", failure.what());
    return 1;
  }
}
