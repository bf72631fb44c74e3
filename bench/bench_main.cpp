// The main function of every benchmark program. Besides the options of Google Benchmark:
//
//   --small         small files, to show that the program works
//   --memory NAME   runs one operation once and prints how many bytes its peak needs
#include <benchmark/benchmark.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <random>
#include <string_view>
#include <vector>

#include "operation.h"

namespace Bench {

namespace {

// Not static objects of their own, because the registrations of other files run before.
std::vector<Operation>& Operations() {
  static std::vector<Operation> operations;
  return operations;
}

bool isSmall = false;
std::filesystem::path folder;

/// The zone determines the cost of each call of the calendar. Without TZ the C library looks for a
/// file at each call.
void PinZone() {
  setenv("TZ", "Europe/Berlin", /*overwrite=*/1);
  tzset();
}

[[noreturn]] void FailWrongResult(const Operation& operation) {
  std::fprintf(stderr, "%s: wrong result\n", operation.name.c_str());
  std::filesystem::remove_all(folder);
  std::_Exit(1);
}

/// Not inlined, so that an instruction profiler can count in this function only.
[[gnu::noinline]] void RunMeasured(const Operation& operation) {
  if (!operation.run()) FailWrongResult(operation);
}

void Measure(benchmark::State& state, const Operation& operation) {
  for (auto iteration : state) {
    state.PauseTiming();
    operation.prepare();
    state.ResumeTiming();
    RunMeasured(operation);
  }
}

int MeasureTimes(int count, char** arguments) {
  for (const Operation& operation : Operations()) {
    benchmark::RegisterBenchmark(operation.name.c_str(), Measure, operation)
        ->Unit(benchmark::kMillisecond);
  }
  benchmark::Initialize(&count, arguments);
  if (benchmark::ReportUnrecognizedArguments(count, arguments)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}

/// The largest resident size of this process so far. Unlike that of getrusage, it does not include
/// the program that started this one.
std::size_t PeakBytes() {
  std::ifstream status("/proc/self/status");
  std::string word;
  while (status >> word) {
    std::size_t kibibytes = 0;
    if (word == "VmHWM:" && status >> kibibytes) return kibibytes * 1024;
  }
  return 0;
}

/// In a process of its own, because the memory of the writer would count as the operation's.
bool PrepareElsewhere(const Operation& operation) {
  const pid_t child = fork();
  if (child == 0) {
    operation.prepare();
    std::_Exit(0);
  }
  int status = 1;
  return child > 0 && waitpid(child, &status, 0) == child && status == 0;
}

int MeasureMemory(std::string_view name) {
  for (const Operation& operation : Operations()) {
    if (operation.name != name) continue;
    if (!PrepareElsewhere(operation)) return 1;
    const std::size_t before = PeakBytes();
    RunMeasured(operation);
    std::printf("%zu\n", PeakBytes() - before);
    return 0;
  }
  return 2;
}

}  // namespace

Registration::Registration(Operation operation) { Operations().push_back(std::move(operation)); }

std::size_t Sized(std::size_t full, std::size_t small) { return isSmall ? small : full; }

const std::filesystem::path& Folder() { return folder; }

/// Removes `option` from the arguments. Returns whether it was there.
static bool TakeOption(std::vector<char*>& arguments, std::string_view option) {
  return std::erase_if(arguments, [&](const char* text) { return text == option; }) != 0;
}

static int Main(std::vector<char*> arguments) {
  PinZone();
  isSmall = TakeOption(arguments, "--small");
  folder = std::filesystem::temp_directory_path() /
           ("wattleaf-bench-" + std::to_string(std::random_device{}()));
  std::filesystem::create_directory(folder);

  int result = 0;
  if (arguments.size() == 3 && std::string_view(arguments[1]) == "--memory") {
    result = MeasureMemory(arguments[2]);
  } else {
    int count = static_cast<int>(arguments.size());
    arguments.push_back(nullptr);
    result = MeasureTimes(count, arguments.data());
  }
  std::filesystem::remove_all(folder);
  return result;
}

}  // namespace Bench

int main(int count, char** arguments) { return Bench::Main({arguments, arguments + count}); }
