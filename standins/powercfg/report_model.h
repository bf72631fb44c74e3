#pragma once

// Stand-in: a seeded model of the energy that the applications of a notebook use, hour by hour.
// Portable, and the same on every platform: whole numbers only.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace Standin {

/// The element with a row's energy.
struct TotalEnergy {
  std::optional<std::string> value;  // decimal; absent if the element has no such attribute
};

/// One row of the report. Texts are UTF-8; an absent member is left out of the row.
struct ReportRow {
  std::optional<std::string> appId;
  std::optional<std::string> timeStamp;
  std::optional<TotalEnergy> total;
};

struct ReportSettings {
  std::uint64_t seed;
  int days;                                            // of 24 hours, up to `now`
  std::int64_t now;                                    // seconds since 1970
  std::string devicePrefix;                            // of paths on drive C:
  std::function<std::string(std::int64_t)> localTime;  // the text of an instant in a row
  std::string only;  // parts of identities, separated by "|": others have no rows; empty for all
};

/// The rows in the order of time: for each hour one row for each application that ran in it, and
/// some malformed or repeated rows. The rows of an hour depend on seed and hour only, so that
/// reports made at different times agree; only the newest hour has half of its energy.
[[nodiscard]] std::vector<ReportRow> MakeReportRows(const ReportSettings& settings);

}  // namespace Standin
