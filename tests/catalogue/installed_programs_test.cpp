#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>

#include "catalogue/desktop_apps.h"
#include "catalogue/registry_calls.h"
#include "catalogue/scratch_key.h"

using TestSupport::RegistryCalls;
using TestSupport::ScratchKey;
using namespace Zq::Gantry::Server::Services::Wattleaf;

// Uses the machine's own uninstall roots with a key of the test in them. The tests run one after
// the other, since a new or removed key moves the indexes of the others.
namespace {

constexpr wchar_t kFirstRoot[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall";
constexpr wchar_t kSecondRoot[] =
    L"SOFTWARE\\WOW6432Node\\Microsoft\\Windows\\CurrentVersion\\Uninstall";

bool HasOpened(const RegistryCalls& calls, const wchar_t* path) {
  return std::any_of(calls.opened.begin(), calls.opened.end(),
                     [path](const RegistryCalls::Opened& one) { return one.path == path; });
}

std::wstring OwnKey(const wchar_t* root) {
  return std::wstring(root) + L"\\WattleafTest" + std::to_wstring(GetCurrentProcessId());
}

/// Sets a value of the key, which is that of a program.
void Set(const ScratchKey& key, const wchar_t* value, const std::wstring& text) {
  RegSetKeyValueW(key.Hive(), key.Path(), value, REG_SZ, text.c_str(),
                  static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

}  // namespace

TEST(AddInstalledPrograms, ReadsTheTwoRootsInOrder) {
  RegistryCalls calls;
  calls.onOpen = [](const std::wstring&) { return ERROR_FILE_NOT_FOUND; };
  DesktopApps apps;
  AddInstalledPrograms(apps);
  ASSERT_EQ(calls.opened.size(), 2u);
  EXPECT_EQ(calls.opened[0].parent, HKEY_LOCAL_MACHINE);
  EXPECT_EQ(calls.opened[0].path, kFirstRoot);
  EXPECT_EQ(calls.opened[1].parent, HKEY_LOCAL_MACHINE);
  EXPECT_EQ(calls.opened[1].path, kSecondRoot);
  EXPECT_EQ(calls.opened[0].access, 131097u);
  EXPECT_TRUE(apps.empty());
  EXPECT_TRUE(calls.enumerated.empty());
}

TEST(AddInstalledPrograms, PrefersTheSecondRoot) {
  const ScratchKey first(HKEY_LOCAL_MACHINE, OwnKey(kFirstRoot));
  const ScratchKey second(HKEY_LOCAL_MACHINE, OwnKey(kSecondRoot));
  Set(first, L"DisplayName", L"Wattleaf test program");
  Set(first, L"DisplayIcon", L"first.ico");
  Set(second, L"DisplayName", L"Wattleaf test program");
  Set(second, L"DisplayIcon", L"second.ico");
  DesktopApps apps;
  AddInstalledPrograms(apps);
  EXPECT_EQ(apps[L"Wattleaf test program"], L"second.ico");
}

TEST(AddInstalledPrograms, ReadsTheFirstRootWhenTheSecondIsMissing) {
  const ScratchKey first(HKEY_LOCAL_MACHINE, OwnKey(kFirstRoot));
  Set(first, L"DisplayName", L"Alone");
  RegistryCalls calls;
  calls.onOpen = [](const std::wstring& path) -> std::optional<LSTATUS> {
    if (path == kSecondRoot) return ERROR_FILE_NOT_FOUND;
    return std::nullopt;
  };
  DesktopApps apps;
  AddInstalledPrograms(apps);
  EXPECT_EQ(apps.count(L"Alone"), 1u);
  EXPECT_TRUE(HasOpened(calls, kSecondRoot));
}

TEST(AddInstalledPrograms, ReadsTheSecondRootWhenTheFirstIsMissing) {
  const ScratchKey second(HKEY_LOCAL_MACHINE, OwnKey(kSecondRoot));
  Set(second, L"DisplayName", L"Alone");
  RegistryCalls calls;
  calls.onOpen = [](const std::wstring& path) -> std::optional<LSTATUS> {
    if (path == kFirstRoot) return ERROR_FILE_NOT_FOUND;
    return std::nullopt;
  };
  DesktopApps apps;
  AddInstalledPrograms(apps);
  EXPECT_EQ(apps.count(L"Alone"), 1u);
}
