#pragma once

#include <optional>
#include <string>
#include <vector>

namespace WattleafHost {

struct RankedApp {
  std::string name;
  /// Path of its PNG; empty where it has none.
  std::string icon;
  /// Percent of the energy of the period.
  double share = 0.0;
};

/// The result of command 2, largest share first: [{"Name":"...","Icon":"...","Value":37.5},...].
using Ranking = std::vector<RankedApp>;

/// Nothing for a text of another shape, as one that was cut off.
std::optional<Ranking> TryReadRanking(const std::string& text);

/// The input of command 2.
std::string RankingRequest(const std::string& iconFolder, unsigned int days);

/// The days of such an input as they stand in it; "0", which the service takes, where there are
/// none.
std::string DaysOfRequest(const std::string& request);

}  // namespace WattleafHost
