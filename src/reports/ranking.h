#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/icon_finder.h"
#include "catalogue/installed_apps.h"
#include "reports/power_store.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// The largest number of applications in a ranking. There is no entry for the sum of the others.
inline constexpr std::size_t kMostRankedApps = 20;

/// One application of the ranking. The texts are bytes from the store and from the IconMaker.
struct TopAppEntry {
  std::string Name;  ///< the display name; applications of one name are one entry
  std::string Icon;  ///< full path, or empty; the first one that was found
  float Value = 0;   ///< percent of the energy of the period
};

using Ranking = std::vector<TopAppEntry>;

/// The applications with the largest share of the energy of the rows, largest first. A row that
/// lacks a name, or has an empty display name, counts in the total only, and so does one of an
/// application that is not shown. If the energies add up to 0, no value is finite. Makes an icon in
/// `iconDirectory` for each application that is shown, even if it does not rank among the largest.
[[nodiscard]] Ranking RankApplications(const StoredRows& store, const DesktopApps& desktopApps,
                                       const PackagedApps& packagedApps,
                                       std::string_view iconDirectory, IconMaker& icons);

/// Sorts by descending value, NaN last, and keeps the first twenty. The order of equal values is
/// not specified.
void KeepLargest(Ranking& ranking);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
