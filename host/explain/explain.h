#pragma once

#include "command_line/options.h"

namespace WattleafHost {

/// Explains the energy of a day, or of an hour of a day, from a copy of the data folder, and prints
/// it. Returns kDone. Throws FileFailure if there is no space for a copy.
[[nodiscard]] int Run(const ExplainRequest& request, const Options& options);

}  // namespace WattleafHost
