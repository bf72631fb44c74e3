// Years of daily passes of the shipped library, with sixteen clients.
//
// soak samples PLAN FOLDER SEED    writes the collector's files of each pass into FOLDER
// soak run PLAN FOLDER SEED        runs the passes with these files
// soak ledger DAYS FILE 0          without the library: adds days to a ledger of a year, and each
//                                  time writes and reads FILE as a pass does
// PLAN       a line for each pass: its instant in seconds since 1970, then others at which clients
//            ask before the next pass; "files" at the end if ledger and store are copied
// FOLDER     gets "pass<i>" for pass i from 0, with the encrypted samples that are new and
//            truth.json; of a run also answers.txt, use.txt, report<i>.xml, and in pass<i>
//            the ledger and the store
// Each line of answers.txt is "<pass> <instant> <command> <number of answers> <text>"; the instant
// is 0 while the pass runs. Each line of use.txt is
// "<pass> <answers so far> <handles> <private bytes> <committed bytes> <bytes in use> <free
// bytes>", the last two of all heaps. "ledger" prints the bytes in use of all heaps that were added
// after the tenth day.

#include <windows.h>

#include <stdlib.h>
#include <time.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/calendar.h"
#include "clients.h"
#include "host/scenario/service_session.h"
#include "host/scenario/worker_gate.h"
#include "ledger/ledger_file.h"
#include "ledger/power_ledger.h"
#include "process_use.h"
#include "sample_file.h"
#include "simulated_calls.h"

namespace {

namespace fs = std::filesystem;
using namespace Zq::Gantry::Server::Services::Wattleaf;
using Scenario::ServiceSession;
using Scenario::WorkerGate;

constexpr wchar_t kDataFolder[] = L"C:\\ProgramData\\ZQ\\TelemetryDataCollector\\PCMCollector";
constexpr std::int64_t kSecondsBetweenSamples = 300;
constexpr int kDaysBeforeTheFirstPass = 5;
constexpr int kCommandsOfAThread = 2;
constexpr int kPassesUntilSettled = 10;

struct PlannedPass {
  std::int64_t instant = 0;
  std::vector<std::int64_t> questions;
  bool copiesFiles = false;
};

std::vector<PlannedPass> ReadPlan(const std::string& path) {
  std::vector<PlannedPass> passes;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    PlannedPass& pass = passes.emplace_back();
    words >> pass.instant;
    for (std::string word; words >> word;) {
      if (word == "files") {
        pass.copiesFiles = true;
      } else {
        pass.questions.push_back(std::stoll(word));
      }
    }
  }
  if (passes.empty()) throw std::runtime_error("no passes in " + path);
  return passes;
}

fs::path FolderOfPass(const fs::path& folder, std::size_t pass) {
  return folder / ("pass" + std::to_string(pass));
}

void WriteBytes(const fs::path& path, const std::string& bytes) {
  std::ofstream file(path, std::ios::binary);
  file << bytes;
  if (!file.flush()) throw std::runtime_error("cannot write " + path.string());
}

std::string DevicePathOfSystemDrive() {
  std::array<char, 1024> path{};
  QueryDosDeviceA("C:", path.data(), static_cast<DWORD>(path.size()));
  return path.data();
}

/// The day of the pass before is completed, later days are added, and today ends at the pass.
void WriteSamples(const std::vector<PlannedPass>& passes, const fs::path& folder,
                  std::uint64_t seed) {
  const Standin::ModelSettings settings{seed, kSecondsBetweenSamples};
  auto first = Standin::DayAfter(Standin::DayOf(passes.front().instant), -kDaysBeforeTheFirstPass);
  for (std::size_t i = 0; i < passes.size(); ++i) {
    const fs::path place = FolderOfPass(folder, i);
    fs::create_directories(place);
    const auto today = Standin::DayOf(passes[i].instant);
    std::map<std::string, std::vector<Standin::WrittenSample>> days;
    for (auto day = first; day.number <= today.number; day = Standin::DayAfter(day, 1)) {
      auto samples = Standin::TakeSamples(settings, day, passes[i].instant);
      if (!samples) continue;
      WriteBytes(place / ("PcmSampleData_" + day.date + ".json"),
                 Standin::SampleFileBytes(*samples));
      days[day.date] = std::move(*samples);
    }
    WriteBytes(place / "truth.json", Standin::TruthText(days));
    first = today;
  }
}

/// What the growing ledger alone takes: the days themselves, and the texts of its file.
void GrowLedger(int days, const std::wstring& path) {
  const DateTime first{.tm_mday = 1, .tm_year = 100};
  PowerLedger ledger;
  Soak::ProcessUse settled;
  for (int day = 0; day < kMostLedgerDays + days; ++day) {
    ledger[ShiftKeepingHour(first, (1 + day) * kSecondsPerDay)] =
        1000.0F / static_cast<float>(3 + day);
    if (day < kMostLedgerDays) continue;
    if (!SaveLedger(path, ledger) || !HoldsLedger(path, ledger)) {
      throw std::runtime_error("the ledger is not saved");
    }
    LoadLedger(path, first, ledger);
    if (day == kMostLedgerDays + kPassesUntilSettled - 1) settled = Soak::MeasureProcess();
  }
  std::printf("%ld\n", Soak::MeasureProcess().heapBytes - settled.heapBytes);
}

class Run {
 public:
  Run(std::vector<PlannedPass> passes, fs::path folder, std::uint32_t seed)
      : passes_(std::move(passes)),
        folder_(std::move(folder)),
        answers_(folder_ / "answers.txt", std::ios::binary),
        use_(folder_ / "use.txt", std::ios::binary),
        fake_(service_.Library(), /*enabled=*/true),
        gate_(service_.Library()),
        clients_(service_.Service(), seed) {}

  void All() {
    WriteBytes(folder_ / "device.txt", DevicePathOfSystemDrive());
    for (std::size_t i = 0; i < passes_.size(); ++i) {
      RunPass(i);
      for (const std::int64_t instant : passes_[i].questions) {
        WorkerGate::SetClock(instant);
        clients_.Begin(kCommandsOfAThread);
        TakeAnswers(i, instant);
      }
      const Soak::ProcessUse use = Soak::MeasureProcess();
      use_ << i << " " << count_ << " " << use.handles << " " << use.privateBytes << " "
           << use.committedBytes << " " << use.heapBytes << " " << use.freeBytes << "\n";
    }
    if (!answers_.flush() || !use_.flush()) throw std::runtime_error("cannot write the answers");
  }

 private:
  /// Two of the first ten passes take as much memory as any later one.
  static bool NeedsMost(std::size_t pass) { return pass == 3 || pass == 8; }

  void RunPass(std::size_t pass) {
    WorkerGate::SetClock(passes_[pass].instant);
    for (const auto& entry : fs::directory_iterator(FolderOfPass(folder_, pass))) {
      if (entry.path().filename() == "truth.json") continue;
      fs::copy_file(entry.path(), kDataFolder / entry.path().filename(),
                    fs::copy_options::overwrite_existing);
    }
    SetEnvironmentVariableA("WATTLEAF_POWERCFG_NOW", std::to_string(passes_[pass].instant).c_str());
    const fs::path report = folder_ / ("report" + std::to_string(pass) + ".xml");
    SetEnvironmentVariableA("WATTLEAF_POWERCFG_TRUTH", report.string().c_str());
    if (pass == 0) {
      // Without clients: the catalogues are read only now.
      service_.Start();
      WorkerGate::WaitForPass();
    } else {
      if (NeedsMost(pass)) {
        clients_.BeginAllCommands();
      } else {
        clients_.Begin(kCommandsOfAThread);
      }
      WorkerGate::LetNextPassIn();
      WorkerGate::WaitForPass();
      TakeAnswers(pass, 0);
    }
    if (!passes_[pass].copiesFiles) return;
    for (const char* name : {"PowerConsumption.json", "Powerlog.json"}) {
      fs::copy_file(fs::path(kDataFolder) / name, FolderOfPass(folder_, pass) / name);
    }
  }

  void TakeAnswers(std::size_t pass, std::int64_t instant) {
    for (const auto& [answer, count] : clients_.End()) {
      answers_ << pass << " " << instant << " " << answer.first << " " << count << " "
               << answer.second << "\n";
      count_ += count;
    }
  }

  const std::vector<PlannedPass> passes_;
  const fs::path folder_;
  std::ofstream answers_;
  std::ofstream use_;
  ServiceSession service_;
  const Standin::SimulatedCalls fake_;
  const WorkerGate gate_;
  Soak::Clients clients_;
  long count_ = 0;
};

void RunPasses(std::vector<PlannedPass> passes, const fs::path& folder, std::uint32_t seed) {
  fs::create_directories(kDataFolder);
  // Never destroyed: the worker waits in its gate until the process ends.
  Run& run = *new Run(std::move(passes), folder, seed);
  run.All();
}

}  // namespace

int main(int argc, char** argv) {
  const std::string mode = argc == 5 ? argv[1] : "";
  // The C library reads TZ as a POSIX text. Without TZ it uses the system's zone, which is the one
  // that the program was started in.
  _putenv("TZ=");
  _tzset();
  try {
    if (mode == "samples") {
      WriteSamples(ReadPlan(argv[2]), argv[3], std::stoul(argv[4]));
    } else if (mode == "run") {
      RunPasses(ReadPlan(argv[2]), argv[3], static_cast<std::uint32_t>(std::stoul(argv[4])));
    } else if (mode == "ledger") {
      GrowLedger(std::stoi(argv[2]), fs::path(argv[3]).wstring());
    } else {
      std::fprintf(stderr, "usage: soak samples|run|ledger ...\n");
      return 2;
    }
    std::printf("soak: complete\n");
    std::fflush(stdout);
    return 0;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "soak: %s\n", failure.what());
    return 1;
  }
}
