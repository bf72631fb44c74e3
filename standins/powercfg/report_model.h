#pragma once

// Stand-in: a seeded model of how much energy the applications of a notebook take, hour by hour.
// Portable, and the same on every platform: whole numbers only.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace Standin {

/// The element that tells a row's energy.
struct TotalEnergy {
  std::optional<std::string> value;  // decimal; absent where the element has no such attribute
};

/// One row of the report. Texts are UTF-8; what is absent is left out of the row.
struct ReportRow {
  std::optional<std::string> appId;
  std::optional<std::string> timeStamp;
  std::optional<TotalEnergy> total;
};

struct ReportSettings {
  std::uint64_t seed;
  int days;                                            // of 24 hours, up to `now`
  std::int64_t now;                                    // seconds since 1970
  std::string devicePrefix;                            // what the paths of drive C: begin with
  std::function<std::string(std::int64_t)> localTime;  // the text of an instant in a row
  std::string only;  // parts of identities, separated by "|": others have no rows; empty for all
};

/// The rows in the order of time: one a full hour for each application that ran in it, and odd rows
/// among them. The rows of an hour depend on seed and hour only, so that reports of different
/// moments tell the same; the newest hour alone is still half full.
std::vector<ReportRow> MakeReportRows(const ReportSettings& settings);

}  // namespace Standin
