// Stand-in: registers the desktop programs of the simulated notebook as installed, as their set-up
// programs would. Safe to repeat. Exit status 1 if a key cannot be written.

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

#include "base/utf8_text.h"
#include "installed_applications.h"
#include "platform/win32/owners.h"

namespace {

using Zq::Gantry::Platform::UniqueRegKey;
using Zq::Gantry::Server::Services::Wattleaf::FromUtf8;

struct Root {
  std::string_view name;  // as in desktop_apps.txt
  HKEY hive;
  std::wstring_view path;
};

constexpr std::wstring_view kMachineRoot =
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";
constexpr std::wstring_view kSecondMachineRoot =
    L"SOFTWARE\\WOW6432Node\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";

const std::array<Root, 3> kRoots = {{
    {"1", HKEY_LOCAL_MACHINE, kMachineRoot},
    {"2", HKEY_LOCAL_MACHINE, kSecondMachineRoot},
    {"user", HKEY_CURRENT_USER, kMachineRoot},
}};

struct InstalledKey {
  std::string_view root;  // a name of kRoots
  std::wstring name;
  std::optional<std::wstring> displayName;
  std::optional<std::wstring> displayIcon;
  std::optional<std::wstring> displayVersion = std::nullopt;
};

bool SetText(HKEY key, const wchar_t* value, const std::optional<std::wstring>& text) {
  if (!text) return true;
  const auto bytes = static_cast<DWORD>((text->size() + 1) * sizeof(wchar_t));
  return RegSetValueExW(key, value, /*reserved=*/0, REG_SZ,
                        reinterpret_cast<const BYTE*>(text->c_str()), bytes) == ERROR_SUCCESS;
}

bool Register(const InstalledKey& program) {
  const auto root = std::find_if(kRoots.begin(), kRoots.end(),
                                 [&](const Root& one) { return one.name == program.root; });
  if (root == kRoots.end()) return false;
  const std::wstring path = std::wstring(root->path) + program.name;
  UniqueRegKey key;
  const bool written =
      RegCreateKeyExW(root->hive, path.c_str(), /*reserved=*/0, /*class=*/nullptr,
                      REG_OPTION_NON_VOLATILE, KEY_WRITE, /*security=*/nullptr, key.out(),
                      /*disposition=*/nullptr) == ERROR_SUCCESS &&
      SetText(key.get(), L"DisplayName", program.displayName) &&
      SetText(key.get(), L"DisplayIcon", program.displayIcon) &&
      SetText(key.get(), L"DisplayVersion", program.displayVersion);
  if (!written) std::fprintf(stderr, "notebook_setup: cannot write %ls\n", path.c_str());
  return written;
}

bool RegisterPrograms() {
  bool all = true;
  for (const Standin::DesktopApp& app : Standin::kDesktopApps) {
    if (app.registeredName.empty()) continue;
    const std::wstring name = FromUtf8(app.registeredName);
    const std::wstring version = FromUtf8(app.version);
    // Each of two versions of one program has a key.
    all &= Register({app.registeredIn, name + L' ' + version, name,
                     L"\"C:\\" + FromUtf8(app.program) + L"\",0", version});
  }
  return all;
}

/// Entries of real machines that describe no complete program.
bool RegisterOddities() {
  const bool update = Register({"1", L"Update 2026", std::nullopt, L"C:\\Windows\\update.ico"});
  const bool longName = Register({"1", L"Long name", std::wstring(256, L'n'), L""});
  const bool longIcon = Register({"1", L"Long icon", L"Long Icon Tool", std::wstring(128, L'i')});
  const bool again = Register({"2", L"Meadow", L"Meadow Office", std::nullopt});
  return update && longName && longIcon && again;
}

}  // namespace

int main() {
  const bool programs = RegisterPrograms();
  return RegisterOddities() && programs ? 0 : 1;
}
