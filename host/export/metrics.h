#pragma once

#include "command_line/options.h"

namespace WattleafHost {

/// Writes what the data folder says as metrics, without a pass and without changing it. Returns the
/// exit status. Throws FileFailure if a file cannot be copied or written.
[[nodiscard]] int Run(const MetricsRequest& request, const Options& options);

}  // namespace WattleafHost
