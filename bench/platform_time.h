#pragma once

#include <windows.h>

#include <cstddef>
#include <memory>
#include <vector>

#include "import_patch.h"

namespace Bench {

/// The calls whose time is not the library's own.
enum class PlatformPart { kDataProtection, kFiles };

/// Measures the time that the library spends in calls of the platform, from Reset to the start of
/// the energy tool, which follows the part of a pass that holds the lock. One for the process; the
/// library makes these calls from one thread at a time.
class PlatformTime {
 public:
  explicit PlatformTime(HMODULE library);

  void Reset();
  [[nodiscard]] double Seconds(PlatformPart part) const;
  [[nodiscard]] std::size_t Calls(PlatformPart part) const;
  /// The time of all parts.
  [[nodiscard]] double Seconds() const;

 private:
  std::vector<std::unique_ptr<Standin::ImportPatch>> patches_;
};

}  // namespace Bench
