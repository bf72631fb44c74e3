#include "reports/icon_finder.h"

#include "catalogue/drive_path.h"
#include "catalogue/icon_target.h"
#include "reports/package_match.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

// Kept on purpose: an empty outcome is not remembered, so that the next row of the same name tries
// again (test IconFinder.TriesAgainAfterAnEmptyOutcome).
std::string IconFinder::Find(const std::string& appId, const std::string& displayName) {
  const auto known = iconByDisplayName_.find(displayName);
  if (known != iconByDisplayName_.end()) return known->second;
  std::string icon = Produce(appId, displayName);
  if (!icon.empty()) iconByDisplayName_.emplace(displayName, icon);
  return icon;
}

std::string IconFinder::Produce(const std::string& appId, const std::string& displayName) const {
  if (!IsDevicePath(appId)) return CopyLogosOf(appId, displayName);
  return production_.exportAppIcon(appId, production_.directory, displayName,
                                   production_.devicePrefix);
}

// Kept on purpose: every matching package copies its logo to the same place, and the outcome of the
// last one counts (test IconFinder.LetsTheLastMatchingPackageWin).
std::string IconFinder::CopyLogosOf(const std::string& appId,
                                    const std::string& displayName) const {
  if (!StaysInDirectory(production_.directory, displayName)) return {};
  const std::string target = production_.directory + "\\" + displayName + ".png";
  bool isCopied = false;
  for (const auto& [packageName, record] : packagedApps_) {
    if (IsPackageOf(packageName, appId)) isCopied = production_.copyLogo(record.Logo, target);
  }
  return isCopied ? target : std::string();
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
