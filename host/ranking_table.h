#pragma once

#include <functional>
#include <string>

#include "ranking.h"

namespace WattleafHost {

/// Whether a file is there; UTF-8.
using IsThere = std::function<bool(const std::string&)>;

/// Rank, name, share and icon of each application, then the shares as bars; within 80 columns.
/// Empty for an empty ranking.
std::string RankingTable(const Ranking& ranking, const std::string& days,
                         const IsThere& iconIsThere);

}  // namespace WattleafHost
