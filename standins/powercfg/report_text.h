#pragma once

// Stand-in: the reports as text. Portable.

#include <string>
#include <vector>

#include "report_model.h"

namespace Standin {

enum class ReportEncoding { kUtf8, kUtf16 };

/// The report of the applications' energy, in UTF-8 whatever encoding its first line names.
std::string EnergyReportText(const std::vector<ReportRow>& rows, ReportEncoding encoding);

/// The report of the energy problems; nobody is known to read it.
std::string ProblemsReportText(ReportEncoding encoding);

/// The first part of a report, cut inside one of its tags.
std::string BrokenOff(const std::string& text);

/// The bytes of a file: UTF-16 is little-endian with a byte order mark, UTF-8 has none. `text` is
/// valid UTF-8.
std::string FileBytes(const std::string& text, ReportEncoding encoding);

}  // namespace Standin
