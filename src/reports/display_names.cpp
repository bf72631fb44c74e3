#include "reports/display_names.h"

#include <utility>

#include "catalogue/app_identity.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

/// The size of an entry without its texts: two strings, a node of the map, and the heap's overhead
/// for three blocks.
constexpr std::size_t kEntryBytes =
    2 * sizeof(std::string) + 4 * sizeof(void*) + std::size_t{3} * 16;

}  // namespace

DisplayNames::DisplayNames(std::string devicePrefix, const PackagedApps& packagedApps,
                           DescribeFile describeFile, std::size_t mostRememberedBytes)
    : devicePrefix_(std::move(devicePrefix)),
      packagedApps_(packagedApps),
      describeFile_(std::move(describeFile)),
      mostRememberedBytes_(mostRememberedBytes) {}

std::string_view DisplayNames::Resolve(const std::string& appId) {
  if (const auto* known = displayNameByAppId_.TryFind(appId)) return known->second;
  auto name = IsDevicePath(appId) ? TryDescribe(appId) : TryPackageName(appId);
  if (!name) return {};
  const std::size_t bytes = kEntryBytes + appId.size() + name->size();
  if (bytes > mostRememberedBytes_ - rememberedBytes_) return notRemembered_ = std::move(*name);
  rememberedBytes_ += bytes;
  return displayNameByAppId_.FindOrAdd(appId, std::move(*name)).second;
}

// An empty description is remembered too, since getting it reads a file. Executables outside the
// system drive are not remembered: recognising them costs nothing.
std::optional<std::string> DisplayNames::TryDescribe(const std::string& appId) const {
  if (devicePrefix_.empty()) return std::nullopt;
  const auto path = TryDrivePath(appId, devicePrefix_);
  if (!path) return std::nullopt;
  return describeFile_(*path);
}

// Kept on purpose: the search goes on after a match, so the last matching key wins (test
// DisplayNames.UsesTheLastMatchingPackageInKeyOrder).
std::optional<std::string> DisplayNames::TryPackageName(const std::string& appId) const {
  const UwpAppRecord* package = nullptr;
  for (const auto& [packageName, record] : packagedApps_) {
    if (IsPackageOf(packageName, appId)) package = &record;
  }
  if (package == nullptr) return std::nullopt;
  return package->DisplayName;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
