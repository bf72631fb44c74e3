#pragma once

#include <windows.h>

#include <cstdint>

#include "import_patch.h"

namespace Scenario {

/// Holds the library's worker in its hands: the start delay passes at once, a day's sleep lasts
/// until the next pass is let in, and the clock shows what it is set to. One for the process.
class WorkerGate {
 public:
  explicit WorkerGate(HMODULE library);

  /// Seconds since 1970, from now on.
  static void SetClock(std::int64_t now);
  /// Waits until a pass has ended. Throws std::runtime_error where the worker ends instead.
  static void WaitForPass();
  /// Ends the day's sleep.
  static void LetNextPassIn();

 private:
  Standin::ImportPatch sleep_;
  Standin::ImportPatch time_;
};

}  // namespace Scenario
