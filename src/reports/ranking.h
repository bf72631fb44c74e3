#pragma once

#include <rapidjson/document.h>

#include <cstddef>
#include <string>
#include <vector>

#include "catalogue/installed_apps.h"
#include "reports/icon_finder.h"
#include "reports/reporting_period.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// How many applications a ranking holds at most; there is no entry for the rest.
inline constexpr std::size_t kMostRankedApps = 20;

/// One application of the ranking. The texts are bytes as the store and the icon's maker gave them.
struct TopAppEntry {
  std::string Name;
  std::string Icon;  ///< full path, or empty
  float Value = 0;   ///< percent of the energy of the period
};

using Ranking = std::vector<TopAppEntry>;

/// The applications with the largest share of the energy of the period, largest first. `rows` is
/// the array of the 30-day store; an element that lacks a member, or has it in another type, is
/// skipped. Rows of applications that are not shown count in the total. Where the energies add up
/// to 0, no value is finite.
Ranking RankApplications(const rapidjson::Value& rows, const ReportingPeriod& period,
                         const DesktopApps& desktopApps, const PackagedApps& packagedApps,
                         const IconProduction& icons);

/// Sorts by falling value, what is no number last, and cuts off what stands behind the twentieth.
/// Equal values stand in any order.
void KeepLargest(Ranking& ranking);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
