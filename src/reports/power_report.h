#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "reports/display_names.h"
#include "reports/power_log.h"
#include "reports/reporting_period.h"

// The system's report of application energy, "Powerlog.xml"; docs/formats/powerlog-xml.md.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// A larger report counts as one that does not parse, and so does one with more of the characters
/// "<" and "=", which bound what its tree takes in memory: anybody may have put the file there.
inline constexpr std::int64_t kLargestPowerReportBytes = 256 * 1024 * 1024;
inline constexpr std::size_t kMostPowerReportMarks = 8'000'000;

/// Adds the rows of the period to `log`: rows of one identity sum up, new ones get their display
/// name. A file that cannot be read or does not parse adds nothing.
void ReadPowerReport(const std::wstring& path, const ReportingPeriod& period, DisplayNames& names,
                     PowerLog& log);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
