#pragma once

// Stand-in: the record of the calls into the collector, and the exceptions that they throw on
// request.

#include <string>

namespace Standin {

/// The text of the simulated standard exception: a text that no format may take apart.
inline constexpr char kSimulatedFailure[] = "sensor at 100% of %s, %d and %n";

/// Appends `call` as a line to the file that WATTLEAF_COLLECTOR_CALLS names; does nothing where the
/// variable is not set. Also called while the library is unloaded and while the process ends.
void RecordCall(const char* call);

/// Records the call. Then throws if `failure` is "<call> standard", a std::runtime_error with
/// kSimulatedFailure, or "<call> other", an int.
void EnterCall(const std::string& failure, const std::string& call);

}  // namespace Standin
