#include "export/metrics.h"

#include "base/utf8_text.h"
#include "command_line/places.h"
#include "export/metrics_text.h"
#include "files/saved_file.h"
#include "snapshot/take_snapshot.h"

namespace WattleafHost {

int Run(const MetricsRequest& request, const Options& options) {
  using Zq::Gantry::Server::Services::Wattleaf::FromUtf8;
  SaveFile(request.output, MetricsText(TakeSnapshot({FromUtf8(kDataFolder), options.days, {}})));
  return kDone;
}

}  // namespace WattleafHost
