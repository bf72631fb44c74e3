#include "reports/ranking.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>

#include "base/byte_text.h"
#include "catalogue/app_identity.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

/// What the ranking knows about one display name.
struct AppOfName {
  std::optional<bool> isInstalled;  ///< as a desktop program; empty until it was looked up
  TopAppEntry* entry = nullptr;     ///< null until the first row that is shown
};

// Kept on purpose: the total adds the low 32 bits of each energy, while the shares use all 64 (test
// RankApplications.ReadsEnergyIn32BitsForTheTotalAndIn64BitsForShares). The sum cannot overflow,
// since an array has fewer than 2^32 elements.
std::int64_t TotalEnergy(const std::deque<StoredRow>& rows) {
  std::int64_t total = 0;
  for (const StoredRow& row : rows) total += EnergyLow32(row.energy);
  return total;
}

bool HasNames(const StoredRow& row, const StoredRows& store) {
  return row.name != StoredRow::kNoName && row.displayName != StoredRow::kNoName &&
         !store.names[row.displayName]->empty();
}

/// A desktop program is shown only if an installed one has exactly this name. Packaged applications
/// are always shown.
bool IsShown(const std::string& appId, const std::string& name, const DesktopApps& desktopApps,
             AppOfName& app) {
  if (!IsDevicePath(appId)) return true;
  if (!app.isInstalled) {
    app.isInstalled = desktopApps.contains(WidenBytes(name.data(), name.data() + name.size()));
  }
  return *app.isInstalled;
}

/// In percent. Every step is done in 32-bit float.
float ShareOf(std::int64_t energy, std::int64_t total) {
  return static_cast<float>(energy) * 100.0F / static_cast<float>(total);
}

bool RanksBefore(const TopAppEntry& left, const TopAppEntry& right) {
  if (std::isnan(left.Value)) return false;
  return std::isnan(right.Value) || left.Value > right.Value;
}

}  // namespace

Ranking RankApplications(const StoredRows& store, const DesktopApps& desktopApps,
                         const PackagedApps& packagedApps, std::string_view iconDirectory,
                         IconMaker& icons) {
  const std::int64_t total = TotalEnergy(store.rows);
  IconFinder iconFinder(packagedApps, iconDirectory, icons);
  std::map<std::string, TopAppEntry> rankedApps;
  std::vector<AppOfName> apps(store.names.size());
  for (const StoredRow& row : store.rows) {
    if (!HasNames(row, store)) continue;
    const std::string& appId = *store.names[row.name];
    const std::string& displayName = *store.names[row.displayName];
    AppOfName& app = apps[row.displayName];
    if (!IsShown(appId, displayName, desktopApps, app)) continue;
    const float share = ShareOf(row.energy, total);
    if (app.entry == nullptr) {
      app.entry = &rankedApps[displayName];
      *app.entry = {displayName, "", share};
    } else {
      app.entry->Value += share;
    }
    // Kept on purpose: an application without an icon gets another try at each of its rows (test
    // RankApplications.RetriesAfterAnEmptyIcon).
    if (app.entry->Icon.empty()) app.entry->Icon = iconFinder.Make(appId, displayName);
  }

  Ranking ranking;
  for (auto& [name, entry] : rankedApps) ranking.push_back(std::move(entry));
  KeepLargest(ranking);
  return ranking;
}

void KeepLargest(Ranking& ranking) {
  std::sort(ranking.begin(), ranking.end(), RanksBefore);
  if (ranking.size() > kMostRankedApps) ranking.resize(kMostRankedApps);
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
