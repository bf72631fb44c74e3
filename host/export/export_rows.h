#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "snapshot/snapshot.h"

namespace WattleafHost {

/// One figure of a snapshot. Empty texts do not apply to it.
struct ExportRow {
  std::string_view kind;
  std::string begin;                 ///< of the hour, day or month
  std::string label;                 ///< of the hour, day or month; the rank of an application
  std::string name;                  ///< of the application
  std::optional<unsigned int> days;  ///< that a share covers
  std::optional<double> value;       ///< nothing if it is missing
  std::string_view unit;
  std::string missing;  ///< why there is no value
};

/// All figures: the state of the platform, average and trees, the ledger, the three series, and the
/// ranking with the share of everything else.
[[nodiscard]] std::vector<ExportRow> ExportRows(const Snapshot& snapshot);

}  // namespace WattleafHost
