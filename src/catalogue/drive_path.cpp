#include "catalogue/drive_path.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

bool IsDevicePath(std::string_view appId) { return appId.starts_with("\\Device\\"); }

// Kept on purpose: the bytes are taken from the start, wherever the prefix was found (test
// DrivePath.TakesTheBytesFromTheStartWhereverThePrefixStands).
std::optional<std::string> TryDrivePath(std::string_view path, std::string_view devicePrefix) {
  if (path.find(devicePrefix) == std::string_view::npos) return std::nullopt;
  return kSystemDrive + std::string(path.substr(devicePrefix.size()));
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
