#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "catalogue/registry_calls.h"
#include "catalogue/scratch_key.h"
#include "collection/open_helper.h"

using TestSupport::OpenHelper;
using TestSupport::RegistryCalls;
using TestSupport::ScratchKey;
using Zq::Gantry::Server::Services::Wattleaf::DesktopApps;

namespace {

constexpr wchar_t kRoot[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall";

class LoadInstalledWin32Apps : public testing::Test {
 protected:
  LoadInstalledWin32Apps() {
    const std::wstring name = L"Wattleaf test program";
    RegSetKeyValueW(program_.Hive(), program_.Path(), L"DisplayName", REG_SZ, name.c_str(),
                    static_cast<DWORD>((name.size() + 1) * sizeof(wchar_t)));
  }

  const ScratchKey program_{HKEY_LOCAL_MACHINE, kRoot + std::wstring(L"\\WattleafTest") +
                                                    std::to_wstring(GetCurrentProcessId())};
  OpenHelper helper_;
};

}  // namespace

TEST_F(LoadInstalledWin32Apps, AddsToTheExistingCatalogue) {
  helper_.win32Apps.Replace(DesktopApps{{L"Earlier program", L"icon"}});
  helper_.LoadInstalledWin32Apps();
  EXPECT_EQ(helper_.win32Apps.Current()->count(L"Wattleaf test program"), 1u);
  EXPECT_EQ(helper_.win32Apps.Current()->at(L"Earlier program"), L"icon");
}

TEST_F(LoadInstalledWin32Apps, ReplacesTheCatalogueInOneStep) {
  helper_.win32Apps.Replace(DesktopApps{{L"Earlier program", L"icon"}});
  const auto before = helper_.win32Apps.Current();
  RegistryCalls calls;
  std::size_t seen = 0;
  calls.onEnumerate = [&](DWORD, wchar_t*, DWORD*) -> std::optional<LSTATUS> {
    // A request during the load still reads the old catalogue.
    EXPECT_EQ(helper_.win32Apps.Current(), before);
    ++seen;
    return std::nullopt;
  };
  helper_.LoadInstalledWin32Apps();
  EXPECT_GT(seen, 1u);
  EXPECT_EQ(before->size(), 1u) << "a map that a reader holds never changes";
  EXPECT_NE(helper_.win32Apps.Current(), before);
}
