#pragma once

#include "json_report.h"
#include "loaded_service.h"
#include "options.h"
#include "simulated_calls.h"

namespace WattleafHost {

/// A report with everything but the answers and the pass.
Report StartReport(const LoadedService& service,
                   const std::vector<Standin::SimulatedCall>& simulated, const Options& options);

}  // namespace WattleafHost
