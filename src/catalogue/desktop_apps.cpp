#include "catalogue/desktop_apps.h"

#include <cwchar>
#include <string>

#include "platform/win32/owners.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

constexpr DWORD kKeyNameChars = 256;
constexpr DWORD kTextBytes = 512;
constexpr DWORD kDisplayIconBytes = 256;

Platform::UniqueRegKey OpenKey(HKEY parent, const wchar_t* path) {
  Platform::UniqueRegKey key;
  if (RegOpenKeyExW(parent, path, /*options=*/0, KEY_READ, key.out()) != ERROR_SUCCESS) {
    // A failing call may leave a value in the key that must not be closed.
    static_cast<void>(key.release());
  }
  return key;
}

/// One value as text; its type is ignored. Stored texts may lack a terminator or hold several.
class ValueText {
 public:
  bool Read(HKEY key, const wchar_t* name, DWORD bytes) {
    return RegQueryValueExW(key, name, /*reserved=*/nullptr, /*type=*/nullptr,
                            reinterpret_cast<BYTE*>(text_), &bytes) == ERROR_SUCCESS;
  }
  [[nodiscard]] std::wstring Get() const {
    return std::wstring(text_, wcsnlen(text_, std::size(text_)));
  }

 private:
  wchar_t text_[kTextBytes / sizeof(wchar_t)] = {};
};

void AddProgram(HKEY key, DesktopApps& apps) {
  ValueText name;
  ValueText icon;
  if (!name.Read(key, kDisplayNameValue, kTextBytes)) return;
  // A program without an icon is installed too.
  static_cast<void>(icon.Read(key, kDisplayIconValue, kDisplayIconBytes));
  apps[name.Get()] = icon.Get();
}

void AddSubkeys(HKEY root, DesktopApps& apps) {
  wchar_t name[kKeyNameChars + 1] = {};
  DWORD nameChars = kKeyNameChars;
  int failures = 0;
  for (DWORD index = 0; failures < kMaxFailuresInARow;) {
    const LSTATUS status =
        RegEnumKeyExW(root, index, name, &nameChars, nullptr, nullptr, nullptr, nullptr);
    if (status == ERROR_NO_MORE_ITEMS) return;
    if (status == ERROR_SUCCESS) {
      failures = 0;
      const Platform::UniqueRegKey subkey = OpenKey(root, name);
      // Kept on purpose: the same index is tried again with the length of the name just read, which
      // leaves no room for its terminator. The call then fails, and the next index follows (test
      // AddProgramsUnderRegistryTest.RetriesASubkeyUntilItOpens).
      if (!subkey) continue;
      AddProgram(subkey.get(), apps);
    } else {
      ++failures;
    }
    ++index;
    nameChars = kKeyNameChars;
  }
}

}  // namespace

void AddProgramsUnder(HKEY hive, const wchar_t* path, DesktopApps& apps) {
  const Platform::UniqueRegKey root = OpenKey(hive, path);
  if (root) AddSubkeys(root.get(), apps);
}

void AddInstalledPrograms(DesktopApps& apps) {
  for (const wchar_t* root : kUninstallRoots) AddProgramsUnder(HKEY_LOCAL_MACHINE, root, apps);
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
