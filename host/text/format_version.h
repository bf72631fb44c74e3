#pragma once

namespace WattleafHost {

/// The version of what `export`, `--json` and `--csv` write; docs/formats/host-output.md. It grows
/// when a member changes its meaning or is left out; new members leave it as it is.
inline constexpr unsigned int kFormatVersion = 1;

}  // namespace WattleafHost
