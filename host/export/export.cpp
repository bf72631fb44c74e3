#include "export/export.h"

#include "base/utf8_text.h"
#include "command_line/console.h"
#include "command_line/places.h"
#include "export/export_text.h"
#include "files/saved_file.h"
#include "snapshot/take_snapshot.h"

namespace WattleafHost {

int Run(const ExportRequest& request, const Options& options) {
  using Zq::Gantry::Server::Services::Wattleaf::FromUtf8;
  const Snapshot snapshot = TakeSnapshot({FromUtf8(kDataFolder), options.days, {}});
  const std::string text = request.csv ? ExportCsv(snapshot) : ExportNdjson(snapshot);
  if (request.output.empty()) {
    Print(text);
  } else {
    SaveFile(request.output, text);
  }
  return kDone;
}

}  // namespace WattleafHost
