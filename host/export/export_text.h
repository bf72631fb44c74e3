#pragma once

#include <string>

#include "snapshot/snapshot.h"

// A snapshot as rows of one form, for programs that collect them from many machines;
// docs/formats/host-output.md.
namespace WattleafHost {

/// One JSON object on each line. What is not known is null.
[[nodiscard]] std::string ExportNdjson(const Snapshot& snapshot);

/// The same rows as comma-separated values, after a line with the names. What is not known is
/// empty.
[[nodiscard]] std::string ExportCsv(const Snapshot& snapshot);

}  // namespace WattleafHost
