#pragma once

#include <functional>
#include <string>

#include "snapshot/snapshot.h"

namespace WattleafHost {

/// The bytes of a file; empty if it cannot be read. The path is UTF-8.
using IconReader = std::function<std::string(const std::string& path)>;

/// The largest applications and everything else as a table of HTML, with icons and bars. The widest
/// bar is that of the largest row. Without applications, the reason.
[[nodiscard]] std::string SharesSection(const Snapshot& snapshot, const IconReader& readIcon);

}  // namespace WattleafHost
