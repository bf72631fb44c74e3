#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "catalogue/package_manager.h"
#include "catalogue/package_manifest.h"
#include "catalogue/packaged_apps.h"
#include "installed_applications.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;

// The packaged applications of the simulated notebook, as the library finds them through the
// system's own activation.
namespace {

constexpr wchar_t kFirst[] =
    L"C:\\Program Files\\WindowsApps\\Orchard.Notes_1.0.0.0_x64__k3d8wq1zt0m6y";

class NotebookPackages : public testing::Test {
 protected:
  void SetUp() override {
    if (GetFileAttributesW(kFirst) == INVALID_FILE_ATTRIBUTES) {
      GTEST_SKIP() << "the simulated notebook is not here";
    }
  }

  static void ReadManifest(const std::wstring& path, std::wstring& logo) {
    if (const auto named = TryReadManifestLogo(path)) logo = *named;
  }
};

}  // namespace

TEST_F(NotebookPackages, EnterTheCatalogueWhereTheyAreApplicationsWithALogo) {
  PackagedApps apps;
  int failures = 0;
  AddPackagedApps(
      *FindAllPackages(), &ReadManifest, [&] { ++failures; }, apps);
  EXPECT_EQ(failures, 0);
  for (const auto& app : Standin::kPackagedApps) {
    const bool enters = app.kind == "app" && app.logo != "none";
    EXPECT_EQ(apps.count(std::string(app.name)), enters ? 1U : 0U) << app.name;
  }
  EXPECT_EQ(apps["Orchard.Notes"].DisplayName, "Orchard Notes");
  for (const auto& [name, record] : apps) {
    EXPECT_NE(GetFileAttributesA(record.Logo.c_str()), INVALID_FILE_ATTRIBUTES) << record.Logo;
  }
}
