#pragma once

#include <string>

#include "report/report_shares.h"
#include "snapshot/snapshot.h"

namespace WattleafHost {

/// The snapshot as one HTML page that needs nothing else: no script, no network, icons as data. At
/// most 200 KB plus the icons. All texts may be hostile.
[[nodiscard]] std::string ReportPage(const Snapshot& snapshot, const IconReader& readIcon);

}  // namespace WattleafHost
