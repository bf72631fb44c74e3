#pragma once

#include "command_line/options.h"

namespace WattleafHost {

/// Prints or writes what the data folder says, without a pass and without changing it. Returns the
/// exit status. Throws FileFailure if a file cannot be copied or written.
[[nodiscard]] int Run(const ExportRequest& request, const Options& options);

}  // namespace WattleafHost
