#pragma once

#include <string>

#include "snapshot.h"

// A snapshot as rows of one form, for programs that collect them from many machines;
// docs/formats/host-output.md.
namespace WattleafHost {

/// The version of the format of `export` and of `--json`. It grows when a member changes its
/// meaning or is left out; new members leave it as it is.
inline constexpr unsigned int kFormatVersion = 1;

/// One JSON object on each line. What is not known is null.
[[nodiscard]] std::string ExportNdjson(const Snapshot& snapshot);

/// The same rows as comma-separated values, after a line with the names. What is not known is
/// empty.
[[nodiscard]] std::string ExportCsv(const Snapshot& snapshot);

}  // namespace WattleafHost
