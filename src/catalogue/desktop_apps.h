#pragma once

#include <windows.h>

#include <array>

#include "catalogue/installed_apps.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Where programs declare themselves as installed, below HKEY_LOCAL_MACHINE, in the order of
/// reading.
inline constexpr std::array<const wchar_t*, 2> kUninstallRoots = {
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall",
    L"SOFTWARE\\WOW6432Node\\Microsoft\\Windows\\CurrentVersion\\Uninstall",
};

/// Values of a program's key. Display name, as in "Meadow Office", at most 255 characters.
inline constexpr wchar_t kDisplayNameValue[] = L"DisplayName";
/// Place of the icon, as in "C:\Program Files\Meadow\meadow.exe,0", at most 127 characters.
inline constexpr wchar_t kDisplayIconValue[] = L"DisplayIcon";

/// After so many failures without a success between them, an enumeration counts as ended: a
/// registry that fails at every index would never tell its end.
inline constexpr int kMaxFailuresInARow = 10'000;

/// Adds the programs whose keys lie below `hive`\`path`; a name that is there already gets the new
/// icon. A key without display name is passed over, and nothing is logged.
void AddProgramsUnder(HKEY hive, const wchar_t* path, DesktopApps& apps);

/// Adds the programs of both roots, so that the second root beats the first.
void AddInstalledPrograms(DesktopApps& apps);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
