#pragma once

#include <windows.h>

#include <cstdint>

#include "import_patch.h"

namespace Scenario {

/// Controls the library's worker and clock: the start delay is skipped, the sleep of a day lasts
/// until LetNextPassIn, and the time is the one set. One for the process.
class WorkerGate {
 public:
  explicit WorkerGate(HMODULE library);

  /// Sets the time, in seconds since 1970.
  static void SetClock(std::int64_t now);
  /// Waits until a pass has ended. Throws std::runtime_error if the worker ends instead.
  static void WaitForPass();
  /// Ends the day's sleep.
  static void LetNextPassIn();

 private:
  Standin::ImportPatch sleep_;
  Standin::ImportPatch time_;
};

}  // namespace Scenario
