#include "worker_gate.h"

#include <time.h>

#include <array>
#include <atomic>
#include <stdexcept>

#include "collection/worker_plan.h"
#include "platform/win32/owners.h"

namespace Scenario {

namespace {

using Zq::Gantry::Platform::UniqueHandle;
using Zq::Gantry::Server::Services::Wattleaf::kPassInterval;
using Zq::Gantry::Server::Services::Wattleaf::kStartDelay;

constexpr DWORD kLongestWaitMilliseconds = 300'000;

UniqueHandle MakeEvent() {
  return UniqueHandle(CreateEventW(/*attributes=*/nullptr, /*manualReset=*/FALSE,
                                   /*initialState=*/FALSE, /*name=*/nullptr));
}

UniqueHandle OpenThisThread() {
  UniqueHandle thread;
  DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), thread.out(),
                  SYNCHRONIZE, /*inherit=*/FALSE, /*options=*/0);
  return thread;
}

struct State {
  std::atomic<std::int64_t> clock = 0;
  UniqueHandle workerSeen = MakeEvent();
  UniqueHandle passEnded = MakeEvent();
  UniqueHandle nextPass = MakeEvent();
  UniqueHandle worker;  // written before `workerSeen` is set, read after that
};

/// Never destroyed: the worker still waits for its events when the process ends.
State& Shared() {
  static State& state = *new State;
  return state;
}

void WINAPI FakeSleep(DWORD length) {
  State& state = Shared();
  if (length == kStartDelay.count()) {
    state.worker = OpenThisThread();
    SetEvent(state.workerSeen.get());
  } else if (length == kPassInterval.count()) {
    SetEvent(state.passEnded.get());
    WaitForSingleObject(state.nextPass.get(), INFINITE);
  } else {
    Sleep(length);
  }
}

__time64_t FakeTime(__time64_t* out) {
  const __time64_t now = Shared().clock;
  if (out != nullptr) *out = now;
  return now;
}

void AwaitWorker() {
  static bool seen = false;
  if (seen) return;
  if (WaitForSingleObject(Shared().workerSeen.get(), kLongestWaitMilliseconds) != WAIT_OBJECT_0) {
    throw std::runtime_error("no worker has begun its start delay");
  }
  seen = true;
}

}  // namespace

WorkerGate::WorkerGate(HMODULE library)
    : sleep_(library, "Sleep", &FakeSleep), time_(library, "_time64", &FakeTime) {}

void WorkerGate::SetClock(std::int64_t now) { Shared().clock = now; }

void WorkerGate::WaitForPass() {
  AwaitWorker();
  const std::array handles = {Shared().passEnded.get(), Shared().worker.get()};
  const DWORD woken = WaitForMultipleObjects(static_cast<DWORD>(handles.size()), handles.data(),
                                             /*waitAll=*/FALSE, kLongestWaitMilliseconds);
  if (woken == WAIT_OBJECT_0) return;
  throw std::runtime_error(woken == WAIT_OBJECT_0 + 1
                               ? "the worker has ended: see the log for why it did not collect"
                               : "the pass does not end");
}

void WorkerGate::LetNextPassIn() { SetEvent(Shared().nextPass.get()); }

}  // namespace Scenario
