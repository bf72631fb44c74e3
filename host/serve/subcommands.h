#pragma once

#include "command_line/options.h"

namespace WattleafHost {

/// Starts the service, waits for one pass of its worker, runs all commands and prints the results.
/// Returns the exit status. Throws std::runtime_error if the library cannot be loaded.
[[nodiscard]] int Run(const ServeOnceRequest& request, const Options& options);

/// Runs one command on a service that has not been started, and prints its result. Returns the exit
/// status. Throws std::runtime_error if the library cannot be loaded.
[[nodiscard]] int Run(const CommandRequest& request, const Options& options);

}  // namespace WattleafHost
