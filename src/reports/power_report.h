#pragma once

#include <cstddef>
#include <string>

#include "reports/display_names.h"
#include "reports/power_budget.h"
#include "reports/power_log.h"

// The system's report of application energy, "Powerlog.xml"; docs/formats/powerlog-xml.md.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// Adds the rows of the period to `log`: rows of one identity are added up, and a new row gets its
/// display name. A file that cannot be read, does not parse or may need more than `mostTreeBytes`
/// while it is parsed adds nothing, since any user may have put it there. Nothing is logged; the
/// file is opened with full sharing and left in place.
void ReadPowerReport(const std::wstring& path, const ReportingPeriod& period, DisplayNames& names,
                     PowerLog& log, std::size_t mostTreeBytes = kMostReportTreeBytes);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
