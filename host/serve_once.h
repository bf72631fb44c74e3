#pragma once

#include "options.h"

namespace WattleafHost {

/// Starts the service, waits for one pass of its worker, runs all commands and prints them. The
/// exit status.
int ServeOnce(const Options& options);

}  // namespace WattleafHost
