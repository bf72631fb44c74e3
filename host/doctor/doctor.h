#pragma once

#include "command_line/options.h"

namespace WattleafHost {

/// Goes down the road that a start of the service takes, prints what was found, what it means and
/// what to do, and changes nothing unless the request says so. Returns kDone if this machine can
/// measure, otherwise kCommandFailed. Throws FileFailure if there is no space for a copy.
[[nodiscard]] int Run(const DoctorRequest& request, const Options& options);

}  // namespace WattleafHost
