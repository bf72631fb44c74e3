#include "catalogue/app_identity.h"

#include <cstring>

namespace Zq::Gantry::Server::Services::Wattleaf {

bool IsDevicePath(std::string_view appId) { return appId.starts_with("\\Device\\"); }

bool IsPackageOf(const std::string& packageName, const std::string& appId) {
  return std::strncmp(packageName.c_str(), appId.c_str(), packageName.size()) == 0;
}

// Kept on purpose: the replaced bytes are the first ones of the path, wherever the prefix was found
// (test TryDrivePath.ReplacesTheFirstBytesWhereverThePrefixOccurs).
std::optional<std::string> TryDrivePath(std::string_view path, std::string_view devicePrefix) {
  if (path.find(devicePrefix) == std::string_view::npos) return std::nullopt;
  return kSystemDrive + std::string(path.substr(devicePrefix.size()));
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
