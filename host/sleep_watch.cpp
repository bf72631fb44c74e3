#include "sleep_watch.h"

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
  HANDLE thread = nullptr;
  DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &thread,
                  SYNCHRONIZE, /*inherit=*/FALSE, /*options=*/0);
  return UniqueHandle(thread);
}

/// What has been seen of the worker.
struct Sightings {
  std::atomic<bool> skipsDelay = false;
  UniqueHandle workerSeen = MakeEvent();
  UniqueHandle passCompleted = MakeEvent();
  /// Written before `workerSeen` is set, read after.
  UniqueHandle worker;
};

/// The one for the process: the replaced function carries no context.
Sightings& Seen() {
  static Sightings sightings;
  return sightings;
}

void WINAPI WatchedSleep(DWORD length) {
  Sightings& seen = Seen();
  if (length == kStartDelay.count()) {
    seen.worker = OpenThisThread();
    SetEvent(seen.workerSeen.get());
    if (seen.skipsDelay) return;
  }
  if (length == kPassInterval.count()) {
    SetEvent(seen.passCompleted.get());
    length = INFINITE;
  }
  Sleep(length);
}

/// Nothing where the first pass goes on after a tick.
std::optional<PassEnd> WaitOneTick() {
  const Sightings& seen = Seen();
  const auto tick = static_cast<DWORD>(kTick.count());
  if (WaitForSingleObject(seen.workerSeen.get(), tick) != WAIT_OBJECT_0) return std::nullopt;

  const std::array handles = {seen.passCompleted.get(), seen.worker.get()};
  const DWORD woken = WaitForMultipleObjects(static_cast<DWORD>(handles.size()), handles.data(),
                                             /*waitAll=*/FALSE, tick);
  if (woken == WAIT_OBJECT_0) return PassEnd::kCompleted;
  if (woken == WAIT_OBJECT_0 + 1) return PassEnd::kWorkerEnded;
  return std::nullopt;
}

}  // namespace

SleepWatch::SleepWatch(HMODULE module, Delay delay) : patch_(module, "Sleep", &WatchedSleep) {
  Seen().skipsDelay = delay == Delay::kSkipped;
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
