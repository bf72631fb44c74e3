#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "fault_points.h"
#include "import_list.h"

namespace Faults {

/// How one imported function fails. A function may have several rows.
struct CallFailure {
  const char* name;
  /// What the caller sees.
  const char* failure;
  void* function;
};

[[nodiscard]] const std::vector<CallFailure>& AllCallFailures();

/// Why an import is not made to fail; empty if it has failures in AllCallFailures, or if it is in
/// no list, as a new import is.
[[nodiscard]] std::string_view ReasonToLeaveOut(const Import& import);

/// Failures that first do the call's work find the function through these points.
void UseTargetsOf(const FaultPoints& points);

}  // namespace Faults
