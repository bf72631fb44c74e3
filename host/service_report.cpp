#include "service_report.h"

#include "places.h"

namespace WattleafHost {

Report StartReport(const LoadedService& service,
                   const std::vector<Standin::SimulatedCall>& simulated, const Options& options) {
  Report report;
  report.version = WATTLEAF_HOST_VERSION;
  report.library = service.LibraryPath();
  for (const auto& call : simulated) report.simulatedCalls.push_back({call.name, call.reason});
  report.dataFolder = kDataFolder;
  report.iconFolder = options.iconFolder;
  report.days = options.days;
  report.log = LogFile();
  return report;
}

}  // namespace WattleafHost
