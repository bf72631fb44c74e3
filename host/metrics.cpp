#include "metrics.h"

#include "base/utf8_text.h"
#include "metrics_text.h"
#include "places.h"
#include "saved_file.h"
#include "take_snapshot.h"

namespace WattleafHost {

int Run(const MetricsRequest& request, const Options& options) {
  using Zq::Gantry::Server::Services::Wattleaf::FromUtf8;
  SaveFile(request.output, MetricsText(TakeSnapshot({FromUtf8(kDataFolder), options.days, {}})));
  return kDone;
}

}  // namespace WattleafHost
