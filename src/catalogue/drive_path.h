#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// The drive whose executables are named and whose icons are shown.
inline constexpr char kSystemDrive[] = "C:";

/// Whether an application's identity is the device path of an executable.
bool IsDevicePath(std::string_view appId);

/// `path` with as many leading bytes as `devicePrefix` has replaced by "C:"; empty where the prefix
/// does not occur at all. The prefix must not be empty.
std::optional<std::string> TryDrivePath(std::string_view path, std::string_view devicePrefix);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
