// Asks the shipped library for the figures of tools/bench: the time of each command, and how long
// commands wait while a pass holds the lock. Runs on the simulated notebook, beside the library,
// and replaces the content of the data folder. Prints a line for each measurement of a figure: its
// name, and seconds.
//
// bench_host [--small]
//
// --small: few and small files, to show that it works.
#include <windows.h>

#include <stdlib.h>
#include <time.h>
#include <x86intrin.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "ledger/encrypted_samples.h"
#include "logging_standin.h"
#include "platform_time.h"
#include "raw_parsers.h"
#include "security/access/rule_judges.h"
#include "service_session.h"
#include "simulated_calls.h"
#include "worker_gate.h"
#include "written_samples.h"

namespace {

namespace fs = std::filesystem;
using Bench::PlatformPart;
using Bench::PlatformTime;
using Scenario::ServiceSession;
using Scenario::WorkerGate;
using std::chrono::steady_clock;
using Zq::Gantry::Server::Services::ZQService;

const fs::path kDataFolder = L"C:\\ProgramData\\ZQ\\TelemetryDataCollector\\PCMCollector";
constexpr int kDays = 211;
/// The ledger reaches from day 0 to this one.
constexpr int kToday = kDays - 1;
/// Of the days after it.
constexpr int kDailyPasses = 5;
constexpr int kZeroDayPass = kToday + kDailyPasses + 1;
constexpr double kPauseSeconds = 1e-4;
constexpr int kFutureDaysPass = kZeroDayPass + 1;

bool isSmall = false;

std::size_t Sized(std::size_t full, std::size_t small) { return isSmall ? small : full; }

void Print(const std::string& name, double seconds) {
  std::printf("%s %.9g\n", name.c_str(), seconds);
}

double SecondsSince(steady_clock::time_point start) {
  return std::chrono::duration<double>(steady_clock::now() - start).count();
}

// The data folder.

fs::path SamplePath(int day) {
  return kDataFolder / ("PcmSampleData_" + Bench::DateOfDay(day) + ".json");
}

fs::path LedgerPath() { return kDataFolder / "PowerConsumption.json"; }

/// UTF-16LE.
std::string Widened(const std::string& text) {
  std::string wide;
  wide.reserve(2 * text.size());
  for (const char c : text) {
    wide += c;
    wide += '\0';
  }
  return wide;
}

/// In the collector's form.
void WriteDay(const Bench::WrittenSamples& samples) {
  std::ofstream(SamplePath(samples.day), std::ios::binary)
      << TestSupport::Encrypted(Widened(Bench::SamplesText(samples)));
}

void WriteOrdinaryDay(int day) {
  WriteDay({.day = day, .count = Sized(1440, 10), .secondsApart = 60});
}

void EmptyDataFolder() {
  fs::create_directories(kDataFolder);
  for (const auto& entry : fs::directory_iterator(kDataFolder)) fs::remove_all(entry.path());
}

// Passes.

/// Noon of a day.
std::int64_t NoonOf(int day) {
  int year = 0;
  struct tm fields {};
  std::sscanf(Bench::DateOfDay(day).c_str(), "%d-%d-%d", &year, &fields.tm_mon, &fields.tm_mday);
  fields.tm_year = year - 1900;
  fields.tm_mon -= 1;
  fields.tm_hour = 12;
  fields.tm_isdst = -1;
  return _mktime64(&fields);
}

/// Runs a pass at noon of a day and returns the longest wait of the commands that need the lock.
double LongestWait(ServiceSession& service, int day, PlatformTime& platform) {
  static bool isRunning = false;
  platform.Reset();
  WorkerGate::SetClock(NoonOf(day));
  double longest = 0;
  // Asks from before the pass begins, and again so soon that no wait begins late.
  std::jthread asking([&](const std::stop_token& stop) {
    while (!stop.stop_requested()) {
      for (const unsigned int command : {1U, 3U, 5U, 6U}) {
        const auto start = steady_clock::now();
        static_cast<void>(service.Run(command));
        longest = std::max(longest, SecondsSince(start));
      }
      const auto end = steady_clock::now();
      while (SecondsSince(end) < kPauseSeconds) YieldProcessor();  // leaves the lock to the pass
    }
  });
  if (isRunning) {
    WorkerGate::LetNextPassIn();
  } else {
    service.Start();
  }
  isRunning = true;
  WorkerGate::WaitForPass();
  asking.request_stop();
  asking.join();
  return longest;
}

void PrintPlatform(const std::string& pass, const PlatformTime& platform) {
  Print(pass + "-data-protection", platform.Seconds(PlatformPart::kDataProtection));
  Print(pass + "-files", platform.Seconds(PlatformPart::kFiles));
  Print(pass + "-platform", platform.Seconds());
}

/// A first pass, with samples of all days. It reads each day as itself and as the day before
/// another one, the neighbours of today once more, and the day of 25 hours once more as the day
/// after itself.
void MeasureFirstPass(ServiceSession& service, PlatformTime& platform) {
  constexpr double kReads = 2 * kDays + 2;
  for (int day = 0; day < kDays; ++day) WriteOrdinaryDay(day);
  Print("first-pass-wait", LongestWait(service, kToday, platform));
  PrintPlatform("first-pass", platform);
  const auto calls = static_cast<double>(platform.Calls(PlatformPart::kDataProtection));
  Print("first-pass-data-protection-of-all-reads",
        platform.Seconds(PlatformPart::kDataProtection) / calls * kReads);
}

void MeasureDailyPasses(ServiceSession& service, PlatformTime& platform) {
  for (int day = kToday + 1; day <= kToday + kDailyPasses; ++day) {
    WriteOrdinaryDay(day);
    Print("daily-pass-wait", LongestWait(service, day, platform));
    PrintPlatform("daily-pass", platform);
  }
}

// Commands.

/// The processor's clock, because the system's counts in steps of 100 nanoseconds.
double SecondsOfTick() {
  const auto start = steady_clock::now();
  const auto first = __rdtsc();
  Sleep(200);
  return SecondsSince(start) / static_cast<double>(__rdtsc() - first);
}

/// As a client: the text is given back.
void CallAndFree(ZQService& service, unsigned int command) {
  wchar_t input[] = L"";
  wchar_t* output = nullptr;
  const int status = service.ExecuteCommand(/*session=*/nullptr, command, input, &output,
                                            /*callback=*/{}, /*configuration=*/nullptr);
  if (status != 0) throw std::runtime_error("a command has no result");
  service.FreeResult(output);
}

/// The time that 99 of 100 calls of a command do not exceed.
void PrintCommand(const std::string& name, ServiceSession& session, unsigned int command) {
  static const double tick = SecondsOfTick();
  std::vector<unsigned long long> ticks(Sized(20'000, 100));
  for (auto& length : ticks) {
    const auto start = __rdtsc();
    CallAndFree(session.Service(), command);
    length = __rdtsc() - start;
  }
  std::ranges::sort(ticks);
  Print(name, static_cast<double>(ticks[ticks.size() * 99 / 100]) * tick);
}

void MeasureCommands(ServiceSession& session) {
  for (const unsigned int command : {5U, 6U, 7U, 8U, 10U}) {
    PrintCommand("command-" + std::to_string(command), session, command);
  }
}

// Folders of hostile size.

/// The wait, and the part of it that is not the platform's.
void PrintOwnWait(const std::string& pass, double wait, const PlatformTime& platform) {
  Print(pass + "-wait", wait);
  Print(pass + "-own", std::max(wait - platform.Seconds(), 1e-6));
}

/// A day of 23 MB that stays at 0.0, between two short days.
void MeasureZeroDay(ServiceSession& service, PlatformTime& platform) {
  const Bench::WrittenSamples big{.day = 150, .count = Sized(255'000, 100), .hasPower = false};
  EmptyDataFolder();
  WriteDay(big);
  std::ofstream ledger(LedgerPath());
  ledger << R"([{"Key":")" << Bench::DateOfDay(big.day) << R"(","Value":0.0})";
  for (const int day : {big.day - 1, big.day + 1}) {
    WriteDay({.day = day, .count = 3, .hasPower = false});
    ledger << R"(,{"Key":")" << Bench::DateOfDay(day) << R"(","Value":0.0})";
  }
  ledger << "]";
  ledger.close();
  PrintOwnWait("zero-day", LongestWait(service, kZeroDayPass, platform), platform);

  const fs::path plain = kDataFolder / "plain.json";
  Bench::WriteSamples(plain, big);
  const auto start = steady_clock::now();
  const bool isRead = Bench::ParseJson(plain).IsArray();
  Print("zero-day-raw", SecondsSince(start));
  if (!isRead) throw std::runtime_error("the samples do not parse");
  EmptyDataFolder();
}

/// A ledger of 50 MB with dates up to the end of the calendar.
void MeasureFutureDays(ServiceSession& service, PlatformTime& platform) {
  {
    std::ofstream file(LedgerPath(), std::ios::binary);
    const auto days = static_cast<int>(Sized(355'000, 100));
    for (int day = 0; day < days; ++day) {
      file << (day == 0 ? '[' : ',') << R"({"Key":")" << Bench::DateOfDay(kFutureDaysPass + 1 + day)
           << R"(","Value":12.5)" << std::string(108, ' ') << '}';
    }
    file << ']';
  }
  auto start = steady_clock::now();
  rapidjson::Document ledger = Bench::ParseJson(LedgerPath());
  if (!Bench::WriteJson(kDataFolder / "written.json", ledger)) {
    throw std::runtime_error("the ledger cannot be written");
  }
  Print("future-days-raw", SecondsSince(start));
  PrintOwnWait("future-days", LongestWait(service, kFutureDaysPass, platform), platform);
  PrintCommand("future-days-command-6", service, 6);
}

// Judges of rules.

template <typename Judge>
void MeasureJudge(const std::string& name, Judge judge) {
  const std::size_t count = Sized(1'000'000, 100);
  const auto start = steady_clock::now();
  std::size_t passed = 0;
  for (std::size_t i = 0; i < count; ++i) passed += judge() ? 1 : 0;
  Print(name, SecondsSince(start) / static_cast<double>(count));
  if (passed != count) throw std::runtime_error(name + ": wrong result");
}

void MeasureJudges() {
  using namespace Zq::Gantry::Security;
  const std::wstring colours = L"red,orange,yellow,green,cyan,blue,indigo,violet";
  const std::wstring folders =
      L"C:\\Program Files\\Alder\\,C:\\Program Files\\Birch\\,C:\\Program Files\\Cedar\\,"
      L"C:\\Program Files\\Elm\\,C:\\Program Files\\Hazel\\,C:\\Program Files\\Larch\\,"
      L"C:\\Program Files\\Maple\\,C:\\Program Files\\Rowan\\";
  MeasureJudge("contained", [&] { return IsContainedInList(colours, L"violet"); });
  MeasureJudge("begins-with", [&] {
    return BeginsWithFromList(folders, L"c:\\program files\\ROWAN\\bin\\tool.exe");
  });
}

void Run() {
  EmptyDataFolder();
  ServiceSession service;
  // Never destroyed: the worker waits in them until the process ends.
  static const Standin::SimulatedCalls& calls =
      *new Standin::SimulatedCalls(service.Library(), /*enabled=*/true);
  static_cast<void>(calls);
  static const WorkerGate& gate = *new WorkerGate(service.Library());
  static_cast<void>(gate);
  static PlatformTime& platform = *new PlatformTime(service.Library());

  MeasureFirstPass(service, platform);
  MeasureDailyPasses(service, platform);
  MeasureCommands(service);
  MeasureZeroDay(service, platform);
  MeasureFutureDays(service, platform);
  MeasureJudges();
  EmptyDataFolder();
}

// The logger is the host's: to open a file for each line, as the stand-in does, is no cost of ours.
void DropRecord(void* /*context*/, Standin::LogLevel /*level*/, const wchar_t* /*component*/,
                const wchar_t* /*text*/) {}

}  // namespace

int main(int count, char** arguments) {
  isSmall = count > 1 && std::string_view(arguments[1]) == "--small";
  // The C library reads TZ as a POSIX text. Without TZ it uses the system's zone, which is the one
  // that the program was started in.
  _putenv("TZ=");
  _tzset();
  // The collector writes no days of its own.
  _putenv("WATTLEAF_COLLECTOR_DAYS=0");
  Standin::SetLogSink(&DropRecord, nullptr);
  try {
    Run();
    return 0;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "bench_host: %s\n", failure.what());
    return 1;
  }
}
