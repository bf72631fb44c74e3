#pragma once

#include <windows.h>

#include <chrono>
#include <functional>

#include "import_patch.h"

namespace WattleafHost {

/// How the wait for the worker's first pass ended.
enum class PassEnd {
  kCompleted,
  /// The worker's thread has ended: collection did not start.
  kWorkerEnded,
  /// Neither happened within the limit.
  kStillRunning,
};

/// Replaces Sleep in the service's import table to follow the worker: it begins with a sleep of 90
/// seconds, and a sleep of a day follows each pass. The latter never returns, so there is one pass
/// only. Other sleeps are unchanged. For one worker in a process.
class SleepWatch {
 public:
  enum class Delay { kSkipped, kRealTime };

  /// Throws std::runtime_error if `module` does not import Sleep.
  SleepWatch(HMODULE module, Delay delay);

  /// Waits for the end of the first pass; calls `tick` about once a second with the time since the
  /// start of the wait.
  [[nodiscard]] PassEnd WaitForPass(std::chrono::seconds limit,
                                    const std::function<void(std::chrono::seconds)>& tick);

 private:
  Standin::ImportPatch patch_;
};

}  // namespace WattleafHost
