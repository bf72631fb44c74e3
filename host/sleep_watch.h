#pragma once

#include <windows.h>

#include <chrono>
#include <functional>

#include "import_patch.h"

namespace WattleafHost {

/// How the wait for the worker's first pass ended.
enum class PassEnd {
  kCompleted,
  /// The worker's thread is gone: collection did not start.
  kWorkerEnded,
  /// Nothing of both within the limit.
  kStillRunning,
};

/// Stands in the place of Sleep in the service's import table, from where it sees what the worker
/// does: the delay of 90 seconds is the worker's first step, and the sleep of a day follows its
/// pass. The worker's thread is parked in the latter. Other lengths are slept as asked. One worker
/// in a process.
class SleepWatch {
 public:
  enum class Delay { kSkipped, kRealTime };

  /// Throws std::runtime_error where `module` does not import Sleep.
  SleepWatch(HMODULE module, Delay delay);

  /// Waits for the end of the first pass; `tick` gets the time since the start about once a second.
  PassEnd WaitForPass(std::chrono::seconds limit,
                      const std::function<void(std::chrono::seconds)>& tick);

 private:
  Standin::ImportPatch patch_;
};

}  // namespace WattleafHost
