// Stand-in: registers the desktop programs of the simulated notebook as installed, the way their
// set-up programs would have done it. Safe to repeat. Exit status 1 where a key could not be
// written.

#include <windows.h>

#include <array>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

#include "installed_applications.h"
#include "platform/win32/owners.h"

namespace {

constexpr std::array<std::wstring_view, 2> kRoots = {
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\",
    L"SOFTWARE\\WOW6432Node\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\",
};

struct InstalledKey {
  int root;  // 1 or 2
  std::wstring name;
  std::optional<std::wstring> displayName;
  std::optional<std::wstring> displayIcon;
};

/// The list is plain ASCII.
std::wstring Widen(std::string_view text) { return std::wstring(text.begin(), text.end()); }

bool SetText(HKEY key, const wchar_t* value, const std::optional<std::wstring>& text) {
  if (!text) return true;
  const auto bytes = static_cast<DWORD>((text->size() + 1) * sizeof(wchar_t));
  return RegSetValueExW(key, value, /*reserved=*/0, REG_SZ,
                        reinterpret_cast<const BYTE*>(text->c_str()), bytes) == ERROR_SUCCESS;
}

bool Register(const InstalledKey& program) {
  const std::wstring path =
      std::wstring(kRoots[static_cast<std::size_t>(program.root - 1)]) + program.name;
  Zq::Gantry::Platform::UniqueRegKey key;
  const bool written =
      RegCreateKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), /*reserved=*/0, /*class=*/nullptr,
                      REG_OPTION_NON_VOLATILE, KEY_WRITE, /*security=*/nullptr, key.out(),
                      /*disposition=*/nullptr) == ERROR_SUCCESS &&
      SetText(key.get(), L"DisplayName", program.displayName) &&
      SetText(key.get(), L"DisplayIcon", program.displayIcon);
  if (!written) std::fprintf(stderr, "notebook_setup: cannot write %ls\n", path.c_str());
  return written;
}

bool RegisterPrograms() {
  bool all = true;
  for (const Standin::DesktopApp& app : Standin::kDesktopApps) {
    if (app.registeredName.empty()) continue;
    const std::wstring program = Widen(app.program);
    all &= Register({app.root, program.substr(0, program.find(L'\\')), Widen(app.registeredName),
                     L"\"C:\\Program Files\\" + program + L"\",0"});
  }
  return all;
}

/// What real machines have beside proper entries.
bool RegisterOddities() {
  const bool update = Register({1, L"Update 2026", std::nullopt, L"C:\\Windows\\update.ico"});
  const bool longName = Register({1, L"Long name", std::wstring(256, L'n'), L""});
  const bool longIcon = Register({1, L"Long icon", L"Long Icon Tool", std::wstring(128, L'i')});
  const bool again = Register({2, L"Meadow", L"Meadow Office", std::nullopt});
  return update && longName && longIcon && again;
}

}  // namespace

int main() {
  const bool programs = RegisterPrograms();
  return RegisterOddities() && programs ? 0 : 1;
}
