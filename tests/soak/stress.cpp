// The library under sixteen clients and an endless row of passes, until the host frees it or ends.
//
// stress end SEED              the host drops the library in the middle of it and ends a moment
//                              later, in one of the ways of kWaysToEnd; exit status 7
// stress free CYCLES SEED      without the worker, which would keep it loaded: so often the host
//                              waits for its own calls, frees the library and loads it again
// The seed chooses moments, way and commands. A line on standard output says how far it came.

#include <windows.h>

#include <stdlib.h>
#include <time.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "collection/worker_plan.h"
#include "faults/keep_imports.h"
#include "faults/loaded_library.h"
#include "platform/win32/owners.h"
#include "serve/unique_result.h"
#include "service/command_table.h"
#include "service/zq_service.h"
#include "simulated_calls.h"
#include "support/open_handles.h"

namespace {

using Faults::LoadedLibrary;
using Zq::Gantry::Platform::UniqueModule;
using Zq::Gantry::Server::Services::ZQService;
using namespace Zq::Gantry::Server::Services::Wattleaf;

constexpr int kEnded = 7;
constexpr int kWrongStatus = 8;
constexpr int kUnloaded = 9;
constexpr int kClients = 16;
constexpr int kMostLivesUntilSettled = 10;
constexpr DWORD kLongestMomentMilliseconds = 400;

std::atomic<long> answers = 0;

/// Runs a command; ends the process if its status is neither 0 nor "no result".
void RunCommand(ZQService& service, int client, unsigned int command) {
  std::wstring request = L"C:\\users\\Public\\Wattleaf stress-" + std::to_wstring(client) + L"?30";
  wchar_t* output = nullptr;
  const int status = service.ExecuteCommand(/*session=*/nullptr, command, request.data(), &output,
                                            /*callback=*/{}, /*configuration=*/nullptr);
  const WattleafHost::UniqueResult result(output, WattleafHost::FreeResult{&service});
  if (status != kResultHandedOver && status != kNoResult) {
    TerminateProcess(GetCurrentProcess(), kWrongStatus);
  }
  ++answers;
}

unsigned int Draw(std::mt19937& random) {
  return kFirstCommand + static_cast<unsigned int>(random() % kLastCommand);
}

void WINAPI ShortSleep(DWORD milliseconds) {
  const bool isPause = milliseconds == kStartDelay.count() || milliseconds == kPassInterval.count();
  Sleep(isPause ? 1 : milliseconds);
}

struct WayToEnd {
  const char* name;
  void (*end)();
};

const std::array kWaysToEnd = {
    WayToEnd{"return from main", nullptr},
    WayToEnd{"exit", [] { std::exit(kEnded); }},
    WayToEnd{"ExitProcess", [] { ExitProcess(kEnded); }},
    WayToEnd{"ExitProcess on another thread",
             [] {
               std::thread([] { ExitProcess(kEnded); }).detach();
               Sleep(INFINITE);
             }},
    WayToEnd{"TerminateProcess", [] { TerminateProcess(GetCurrentProcess(), kEnded); }},
};

int EndInTheMiddle(std::uint32_t seed) {
  std::mt19937 random(seed);
  // Kept on purpose: detached when the process ends.
  static_cast<void>(UniqueModule(LoadLibraryW(L"end_witness.dll")).release());
  UniqueModule library(LoadLibraryW(Faults::kShippedLibrary));
  // None of these is destroyed: worker and clients use them until the process ends.
  const auto create = reinterpret_cast<ZQService* (*)()>(
      reinterpret_cast<void*>(GetProcAddress(library.get(), "ZQCreateService")));
  ZQService& service = *create();
  static_cast<void>(*new Standin::SimulatedCalls(library.get(), /*enabled=*/true));
  static_cast<void>(*new Standin::ImportPatch(library.get(), "Sleep", &ShortSleep));
  service.startup_task();
  for (int client = 0; client < kClients; ++client) {
    std::thread([&service, client, own = std::mt19937(random())]() mutable {
      for (;;) RunCommand(service, client, Draw(own));
    }).detach();
  }
  Sleep(random() % kLongestMomentMilliseconds);
  library.reset();
  Sleep(random() % kLongestMomentMilliseconds);
  if (GetModuleHandleW(Faults::kShippedLibrary) == nullptr) return kUnloaded;

  const WayToEnd& way = kWaysToEnd[random() % kWaysToEnd.size()];
  std::printf("%ld answers, then %s\n", answers.load(), way.name);
  std::fflush(stdout);
  if (way.end != nullptr) way.end();
  return kEnded;
}

/// One life of the library; its end is the moment at which the host has waited for its calls.
void LoadUseAndFree(std::mt19937& random) {
  LoadedLibrary library({});
  if (!library.CallHelper<bool>("StartCollection")) {
    throw std::runtime_error("the collector does not start");
  }
  std::atomic<bool> isEnding = false;
  std::vector<std::jthread> threads;
  threads.emplace_back([&library, &isEnding] {
    while (!isEnding) library.CallHelper<void>("CalculateDailyPowerConsumption");
  });
  for (int client = 0; client < kClients; ++client) {
    threads.emplace_back([&library, &isEnding, client, own = std::mt19937(random())]() mutable {
      do {
        RunCommand(library.Service(), client, Draw(own));
      } while (!isEnding);
    });
  }
  Sleep(random() % (kLongestMomentMilliseconds / 4));
  isEnding = true;
}

void ExpectNothingLoaded() {
  for (const wchar_t* name : {Faults::kTestedLibrary, L"TelemetryZQXWrapper.dll"}) {
    if (GetModuleHandleW(name) != nullptr) throw std::runtime_error("a library stays loaded");
  }
}

/// The number of handles after a life that added none: the first use in a process makes what stays,
/// and a lock of another library makes its event when two threads first meet there.
long SettledHandles(std::mt19937& random) {
  long handles = 0;
  for (int life = 0; life < kMostLivesUntilSettled; ++life) {
    LoadUseAndFree(random);
    const long before = std::exchange(handles, TestSupport::CountOpenHandles());
    if (handles == before) break;
  }
  return handles;
}

int FreeAgainAndAgain(int cycles, std::uint32_t seed) {
  // The system's libraries leave a handle for each load, which is not the service's.
  Faults::KeepImportsOf(Faults::kTestedLibrary);
  std::mt19937 random(seed);
  const long handles = SettledHandles(random);
  for (int i = 0; i < cycles; ++i) {
    LoadUseAndFree(random);
    ExpectNothingLoaded();
  }
  std::printf("%d cycles, %ld answers, %+ld handles\n", cycles, answers.load(),
              TestSupport::CountOpenHandles() - handles);
  std::fflush(stdout);
  return kEnded;
}

}  // namespace

int main(int argc, char** argv) {
  _putenv("TZ=");
  _tzset();
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  try {
    if (arguments.size() == 2 && arguments[0] == "end") {
      return EndInTheMiddle(static_cast<std::uint32_t>(std::stoul(arguments[1])));
    }
    if (arguments.size() == 3 && arguments[0] == "free") {
      return FreeAgainAndAgain(std::stoi(arguments[1]),
                               static_cast<std::uint32_t>(std::stoul(arguments[2])));
    }
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "stress: %s\n", failure.what());
    return 1;
  }
  std::fprintf(stderr, "usage: stress end SEED, or stress free CYCLES SEED\n");
  return 2;
}
