#include "watchdog.h"

#include <windows.h>

#include <atomic>
#include <exception>
#include <thread>

namespace Faults {

namespace {

constexpr ULONGLONG kLongestRunMilliseconds = 60'000;

struct State {
  std::FILE* report = nullptr;
  std::atomic<const char*> scenario = nullptr;
  std::atomic<const char*> call = nullptr;
  std::atomic<std::uint32_t> position = 0;
  std::atomic<ULONGLONG> begun = 0;  // 0 between runs
};

/// Never destroyed: its thread reads it until the process ends.
State& Shared() {
  static State& state = *new State;
  return state;
}

[[noreturn]] void EndWith(const char* what) {
  const State& state = Shared();
  std::fprintf(state.report, "FINDING %s: %s, %s at %u\n", what,
               state.scenario != nullptr ? state.scenario.load() : "between runs",
               state.call != nullptr ? state.call.load() : "", state.position.load());
  std::fflush(state.report);
  TerminateProcess(GetCurrentProcess(), 3);
  Sleep(INFINITE);
  std::abort();
}

LONG WINAPI OnCrash(EXCEPTION_POINTERS*) { EndWith("crash"); }

void Watch() {
  for (;;) {
    Sleep(1000);
    const ULONGLONG begun = Shared().begun;
    if (begun != 0 && GetTickCount64() - begun > kLongestRunMilliseconds) EndWith("hang");
  }
}

}  // namespace

void StartWatchdog(std::FILE* report) {
  Shared().report = report;
  SetUnhandledExceptionFilter(&OnCrash);
  std::set_terminate([] { EndWith("std::terminate"); });
  std::thread(&Watch).detach();
}

WatchedRun::WatchedRun(const char* scenario, const char* call, std::uint32_t position) {
  State& state = Shared();
  state.scenario = scenario;
  state.call = call;
  state.position = position;
  state.begun = GetTickCount64();
}

WatchedRun::~WatchedRun() { Shared().begun = 0; }

}  // namespace Faults
