#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "call_failures.h"

namespace Faults {

// A process of its own that starts the library's worker, waits for its first pass or its end, and
// returns from main while the library is loaded.

/// Runs in that process. `call` may be empty; otherwise it fails at `position`. Writes the calls
/// that were made, one "<name> <number>" a line, to the file `counts`. Returns the exit status.
[[nodiscard]] int RunAndEnd(const std::string& call, std::uint32_t position,
                            const std::string& counts);

/// How such a process ended: "ends with <exit status>", or "hangs".
[[nodiscard]] std::string StartProcessThatEnds(const std::string& call, std::uint32_t position,
                                               const std::string& counts);

/// The calls that the file names.
[[nodiscard]] std::map<std::string, std::uint32_t> ReadCounts(const std::string& counts);

}  // namespace Faults
