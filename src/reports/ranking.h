#pragma once

#include <rapidjson/document.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/icon_finder.h"
#include "catalogue/installed_apps.h"
#include "reports/power_log.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// The largest number of applications in a ranking; the others get no common entry.
inline constexpr std::size_t kMostRankedApps = 20;

/// One application of the ranking. The texts are bytes from the store and from the IconMaker.
struct TopAppEntry {
  std::string Name;  ///< the display name; applications of one name are one entry
  std::string Icon;  ///< full path, or empty; the first one that was found
  float Value = 0;   ///< percent of the energy of the period
};

using Ranking = std::vector<TopAppEntry>;

/// The applications with the largest share of the energy of the period, largest first. `rows` is
/// the array of the 30-day store; an element that lacks a member, or has one of another type, is
/// skipped. Rows of applications that are not shown count in the total. If the energies add up to
/// 0, no value is finite. Makes an icon in `iconDirectory` for each application that is shown, also
/// for those that do not make it into the ranking.
[[nodiscard]] Ranking RankApplications(const rapidjson::Value& rows, const ReportingPeriod& period,
                                       const DesktopApps& desktopApps,
                                       const PackagedApps& packagedApps,
                                       std::string_view iconDirectory, IconMaker& icons);

/// Sorts by descending value, NaN last, and keeps the first twenty. The order of equal values is
/// not specified.
void KeepLargest(Ranking& ranking);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
