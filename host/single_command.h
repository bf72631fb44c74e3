#pragma once

#include "options.h"

namespace WattleafHost {

/// Runs one command on a service that has not been started, and prints its result. The exit status.
int RunSingleCommand(const Options& options);

}  // namespace WattleafHost
