#pragma once

#include <optional>
#include <string>
#include <string_view>

// An application's identity, as the system's energy report spells it: the device path of an
// executable, as in "\Device\HarddiskVolume3\Tools\a.exe", or the name of a package with suffixes.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// The drive on which executables are looked up for their names and icons.
inline constexpr char kSystemDrive[] = "C:";

/// Whether the identity is the device path of an executable; the comparison is case-sensitive.
[[nodiscard]] bool IsDevicePath(std::string_view appId);

/// Whether the identity begins with the package's name. An identity ends at its first zero, as C
/// strings do.
[[nodiscard]] bool IsPackageOf(const std::string& packageName, const std::string& appId);

/// `path` with its first `devicePrefix.size()` bytes replaced by "C:"; empty if the prefix does not
/// occur anywhere in the path. `devicePrefix` is the device path of the system drive and must not
/// be empty.
[[nodiscard]] std::optional<std::string> TryDrivePath(std::string_view path,
                                                      std::string_view devicePrefix);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
