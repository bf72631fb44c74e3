#pragma once

#include "command_line/options.h"

namespace WattleafHost {

/// Writes the figures of the data folder as one HTML page and prints its place.
[[nodiscard]] int Run(const ReportRequest& request, const Options& options);

}  // namespace WattleafHost
