#pragma once

// Stand-in: the reports as text. Portable.

#include <string>
#include <vector>

#include "report_model.h"

namespace Standin {

enum class ReportEncoding { kUtf8, kUtf16 };

/// The report of the applications' energy. The text is UTF-8; its first line names `encoding`.
[[nodiscard]] std::string EnergyReportText(const std::vector<ReportRow>& rows,
                                           ReportEncoding encoding);

/// The report of the energy problems, which the library does not read.
[[nodiscard]] std::string ProblemsReportText(ReportEncoding encoding);

/// The first part of a report, cut inside a tag.
[[nodiscard]] std::string BrokenOff(const std::string& text);

/// The bytes of a file: UTF-16 little-endian with a byte order mark, or UTF-8 without one. `text`
/// is valid UTF-8.
[[nodiscard]] std::string FileBytes(const std::string& text, ReportEncoding encoding);

}  // namespace Standin
