#pragma once

#include <optional>
#include <string_view>

#include "catalogue/icon_finder.h"
#include "catalogue/installed_apps.h"
#include "reports/power_store.h"
#include "snapshot/snapshot.h"

namespace WattleafHost {

// Why a snapshot has no applications.
inline constexpr char kNoStore[] = "no store";
inline constexpr char kStoreUnreadable[] = "store not readable";
/// The store has no row of the period, or the energies of its rows add up to 0.
inline constexpr char kNoEnergy[] = "no energy in the period";

/// The catalogues and the icons of a ranking. All are borrowed.
struct RankingMeans {
  const Zq::Gantry::Server::Services::Wattleaf::DesktopApps& desktopApps;
  const Zq::Gantry::Server::Services::Wattleaf::PackagedApps& packagedApps;
  std::string_view iconDirectory;
  Zq::Gantry::Server::Services::Wattleaf::IconMaker& icons;
};

/// The ranking of the library for rows that cover `days` days. Empty if their energies add up to 0:
/// then no share is a number.
[[nodiscard]] std::optional<ApplicationShares> TryShareOut(
    const Zq::Gantry::Server::Services::Wattleaf::StoredRows& store, const RankingMeans& means,
    unsigned int days);

/// 100 less the sum of shares. A rest of rounding is 0.0.
[[nodiscard]] double RestOfPercents(double sum);

}  // namespace WattleafHost
