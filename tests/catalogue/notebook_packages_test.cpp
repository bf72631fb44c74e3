#include <windows.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <utility>

#include "catalogue/package_logo.h"
#include "catalogue/package_manager.h"
#include "catalogue/packaged_apps.h"
#include "installed_applications.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;

// The packaged applications of the simulated notebook, found through the system's own activation.
namespace {

constexpr wchar_t kFirst[] =
    L"C:\\Program Files\\WindowsApps\\Orchard.Notes_7.2.0.0_x64__k3d8wq1zt0m6y";

class NotebookPackages : public testing::Test {
 protected:
  void SetUp() override {
    if (GetFileAttributesW(kFirst) == INVALID_FILE_ATTRIBUTES) {
      GTEST_SKIP() << "the simulated notebook is not here";
    }
  }

  ~NotebookPackages() override { _putenv_s("WATTLEAF_PACKAGES", ""); }

  static PackagedApps Catalogue(const char* script) {
    _putenv_s("WATTLEAF_PACKAGES", script);
    PackagedApps apps;
    int failures = 0;
    AddPackagedApps(
        *FindAllPackages(), &ReadManifest, [&] { ++failures; }, apps);
    EXPECT_EQ(failures, 0);
    return apps;
  }

  static void ReadManifest(const std::wstring& path, std::wstring& logo) {
    if (const auto named = TryReadManifestLogo(path)) logo = *named;
  }
};

}  // namespace

TEST_F(NotebookPackages, ApplicationsWithALogoEnterTheCatalogue) {
  PackagedApps apps = Catalogue("address:plain");
  for (const auto& app : Standin::kPackagedApps) {
    const bool enters = app.kind == "app" && app.logo != "none";
    EXPECT_EQ(apps.count(std::string(app.name)), enters ? 1U : 0U) << app.name;
  }
  EXPECT_EQ(apps["Orchard.Notes"].DisplayName, "Orchard Notes");
  for (const auto& [name, record] : apps) {
    EXPECT_NE(GetFileAttributesA(record.Logo.c_str()), INVALID_FILE_ATTRIBUTES) << record.Logo;
  }
}

TEST_F(NotebookPackages, LogosAreTheFilesOfTheirManifests) {
  const std::pair<const char*, const char*> logos[] = {
      {"Orchard.Notes", "7.2.0.0_x64__k3d8wq1zt0m6y\\Assets\\Square44x44Logo.scale-100.png"},
      {"Willow.Weather", "1.0.0.0_x64__f7c2n9xb4r5hp\\Assets\\Square44x44Logo.targetsize-44.png"},
      // The last of two versions.
      {"Finch.Music", "3.2.0.0_x64__f7c2n9xb4r5hp\\Assets\\Square44x44Logo.targetsize-44.png"},
      {"Poplar.Journal", "1.0.0.0_x64__h3j6k9l2p5o8i\\Assets\\Square44x44Logo.scale-200.png"},
      {"Privet.Paint",
       "2.0.0.0_x64__d4f7g0h3j6k9l\\Assets\\Square44x44Logo.altform-unplated_targetsize-44.png"},
      {"Tansy.Clock",
       "2.0.0.0_x64__d4f7g0h3j6k9l\\Assets\\Square44x44Logo.scale-100_contrast-black.png"},
      {"Hornbeam.Suite", "16.0.0.0_x64__s2d5f8g1h4j7k\\Assets\\Square44x44Logo.scale-100.png"},
  };
  PackagedApps apps = Catalogue("");
  for (const auto& [name, logo] : logos) {
    const std::string path = std::string("C:\\Program Files\\WindowsApps\\") + name + "_" + logo;
    EXPECT_EQ(apps[name].Logo, path);
    EXPECT_NE(GetFileAttributesA(path.c_str()), INVALID_FILE_ATTRIBUTES) << path;
  }
}

TEST_F(NotebookPackages, OwnLogosAreTheUndecodedPathsOfTheirUris) {
  const std::pair<const char*, const char*> logos[] = {
      {"Larch.Calendar", "1.0.0.0_x64__2j8vgd6s0a1qe/Assets/StoreLogo.png"},
      {"Gorse.Radio", "6.1.0.0_x64__h3j6k9l2p5o8i/Assets/StoreLogo.png"},
      {"Birch.Backup", "3.3.0.0_x64__s2d5f8g1h4j7k/Assets/StoreLogo.png"},
  };
  PackagedApps apps = Catalogue("");
  for (const auto& [name, logo] : logos) {
    EXPECT_EQ(apps[name].Logo, std::string("C:/Program%20Files/WindowsApps/") + name + "_" + logo);
  }
}

TEST_F(NotebookPackages, DisplayNamesAreNarrowedToTheirLowBytes) {
  PackagedApps apps = Catalogue("");
  EXPECT_EQ(apps["Alder.Wallet"].DisplayName, "ms-resource:AppName");
  EXPECT_EQ(apps["Rowan.Fitness"].DisplayName, "ms-resource:AppName");
  EXPECT_EQ(apps["Aster.Camera"].DisplayName, "ms-resource://Aster.Camera/Resources/Title");
  // U+041A U+043D U+0438 U+0433 U+0438.
  EXPECT_EQ(apps["Yarrow.Books"].DisplayName, "Yarrow \x1A=838");
  EXPECT_EQ(apps["Tilia.Menu"].DisplayName, "Tilia Caf\xE9");
}
