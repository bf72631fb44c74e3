#include "serve/sleep_watch.h"

#include <array>
#include <atomic>
#include <optional>

#include "collection/worker_plan.h"
#include "platform/win32/owners.h"

namespace WattleafHost {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;
using Zq::Gantry::Platform::UniqueHandle;
using Zq::Gantry::Server::Services::Wattleaf::kPassInterval;
using Zq::Gantry::Server::Services::Wattleaf::kStartDelay;

constexpr milliseconds kTick{1000};

UniqueHandle MakeEvent() {
  return UniqueHandle(CreateEventW(/*attributes=*/nullptr, /*manualReset=*/TRUE,
                                   /*initialState=*/FALSE, /*name=*/nullptr));
}

UniqueHandle OpenThisThread() {
  UniqueHandle thread;
  DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), thread.out(),
                  SYNCHRONIZE, /*inherit=*/FALSE, /*options=*/0);
  return thread;
}

/// The state of the worker.
struct WorkerState {
  std::atomic<bool> skipsDelay = false;
  UniqueHandle started = MakeEvent();
  UniqueHandle passCompleted = MakeEvent();
  /// Written before `started` is set, read after.
  UniqueHandle thread;
};

/// One for the process: the replaced function has no context argument.
WorkerState& Worker() {
  static WorkerState state;
  return state;
}

void WINAPI WatchedSleep(DWORD length) {
  WorkerState& worker = Worker();
  if (length == kStartDelay.count()) {
    worker.thread = OpenThisThread();
    SetEvent(worker.started.get());
    if (worker.skipsDelay) return;
  }
  if (length == kPassInterval.count()) {
    SetEvent(worker.passCompleted.get());
    length = INFINITE;
  }
  Sleep(length);
}

/// Nothing if the first pass has not ended after a tick.
std::optional<PassEnd> WaitOneTick() {
  const WorkerState& worker = Worker();
  const auto tick = static_cast<DWORD>(kTick.count());
  if (WaitForSingleObject(worker.started.get(), tick) != WAIT_OBJECT_0) return std::nullopt;

  const std::array handles = {worker.passCompleted.get(), worker.thread.get()};
  const DWORD woken = WaitForMultipleObjects(static_cast<DWORD>(handles.size()), handles.data(),
                                             /*waitAll=*/FALSE, tick);
  if (woken == WAIT_OBJECT_0) return PassEnd::kCompleted;
  if (woken == WAIT_OBJECT_0 + 1) return PassEnd::kWorkerEnded;
  return std::nullopt;
}

}  // namespace

SleepWatch::SleepWatch(HMODULE module, Delay delay) : patch_(module, "Sleep", &WatchedSleep) {
  Worker().skipsDelay = delay == Delay::kSkipped;
}

PassEnd SleepWatch::WaitForPass(seconds limit, const std::function<void(seconds)>& tick) {
  const auto start = steady_clock::now();
  for (;;) {
    if (const auto end = WaitOneTick()) return *end;
    const auto elapsed = std::chrono::duration_cast<seconds>(steady_clock::now() - start);
    if (elapsed >= limit) return PassEnd::kStillRunning;
    tick(elapsed);
  }
}

}  // namespace WattleafHost
