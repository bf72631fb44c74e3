#include "reports/display_names.h"

#include <utility>

#include "catalogue/drive_path.h"
#include "reports/package_match.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

DisplayNames::DisplayNames(std::string devicePrefix, const PackagedApps& packagedApps,
                           DescribeFile describeFile)
    : devicePrefix_(std::move(devicePrefix)),
      packagedApps_(packagedApps),
      describeFile_(std::move(describeFile)) {}

std::string DisplayNames::Resolve(const std::string& appId) {
  if (!displayNameByAppId_.contains(appId)) {
    if (IsDevicePath(appId)) {
      ResolveExecutable(appId);
    } else {
      ResolvePackage(appId);
    }
  }
  const auto known = displayNameByAppId_.find(appId);
  return known != displayNameByAppId_.end() ? known->second : std::string();
}

// A description is remembered even where it is empty, since asking for it reads a file. What is not
// on the system drive is not remembered: that answer costs nothing.
void DisplayNames::ResolveExecutable(const std::string& appId) {
  if (devicePrefix_.empty()) return;
  const auto path = TryDrivePath(appId, devicePrefix_);
  if (path) displayNameByAppId_[appId] = describeFile_(*path);
}

// Kept on purpose: the walk goes on behind a match, so the last matching key wins (test
// DisplayNames.TakesTheLastMatchingPackageInKeyOrder).
void DisplayNames::ResolvePackage(const std::string& appId) {
  for (const auto& [packageName, record] : packagedApps_) {
    if (IsPackageOf(packageName, appId)) displayNameByAppId_[appId] = record.DisplayName;
  }
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
