#pragma once

#include <windows.h>

#include <array>

#include "catalogue/installed_apps.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// The keys below HKEY_LOCAL_MACHINE that list the installed programs, in the order of reading.
inline constexpr std::array<const wchar_t*, 2> kUninstallRoots = {
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall",
    L"SOFTWARE\\WOW6432Node\\Microsoft\\Windows\\CurrentVersion\\Uninstall",
};

/// Value of a program's key, REG_SZ: the display name, as in "Meadow Office". A name of more than
/// 255 characters counts as missing.
inline constexpr wchar_t kDisplayNameValue[] = L"DisplayName";
/// Value of a program's key, REG_SZ: the icon's location, as in
/// "C:\Program Files\Meadow\meadow.exe,0". A text of more than 127 characters counts as missing.
inline constexpr wchar_t kDisplayIconValue[] = L"DisplayIcon";

/// An enumeration ends after this many failures in a row: if every index fails, the end is never
/// reported.
inline constexpr int kMaxFailuresInARow = 10'000;

/// Adds the programs whose keys lie directly below `hive`\`path` (RegEnumKeyExW); a name that is
/// already in `apps` gets the new icon. A key without a display name is skipped. A root that cannot
/// be opened adds nothing. Nothing is logged; the caller keeps `hive`.
void AddProgramsUnder(HKEY hive, const wchar_t* path, DesktopApps& apps);

/// Adds the programs of both roots. Where both name a program, the second root's icon stays.
void AddInstalledPrograms(DesktopApps& apps);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
