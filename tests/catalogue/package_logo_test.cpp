#include "catalogue/package_logo.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "base/scratch_folder.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::ScratchFolder;
using TestSupport::WriteBytes;

namespace {

constexpr wchar_t kNamed[] = L"Assets/Square44x44Logo.png";

/// A package directory with files in "Assets".
class PackageLogo : public testing::Test {
 protected:
  PackageLogo() { std::filesystem::create_directory(assets); }

  void Put(const std::string& name) { WriteBytes(assets / name, "png"); }
  std::wstring Find(const std::wstring& named) { return FindLogoVariant(installed, named); }
  std::wstring InAssets(const std::string& name) { return (assets / name).wstring(); }

  ScratchFolder folder;
  const std::filesystem::path assets = folder.File("Assets");
  const std::wstring installed = assets.parent_path().wstring();
};

/// Nothing may have been told on standard error.
class SilentPackageLogo : public PackageLogo {
 protected:
  void SetUp() override { testing::internal::CaptureStderr(); }
  void TearDown() override { EXPECT_EQ(testing::internal::GetCapturedStderr(), ""); }
};

}  // namespace

TEST_F(SilentPackageLogo, IsTheVariantForAHundredPercentBesideTheNamedFile) {
  Put("Square44x44Logo.scale-200.png");
  Put("Square44x44Logo.scale-100.png");
  EXPECT_EQ(Find(kNamed), InAssets("Square44x44Logo.scale-100.png"));
}

TEST_F(SilentPackageLogo, IsFoundInTheSecondScanByItsSize) {
  Put("Square44x44Logo.targetsize-44.png");
  EXPECT_EQ(Find(kNamed), InAssets("Square44x44Logo.targetsize-44.png"));
}

TEST_F(SilentPackageLogo, OfTheFirstScanWinsOverTheSecond) {
  Put("a44x44.png");
  Put("AppList.scale-100.png");
  EXPECT_EQ(Find(L"Assets/AppList.png"), InAssets("AppList.scale-100.png"));
}

TEST_F(SilentPackageLogo, SuffixStandsAnywhereInTheNameRightAfterTheStem) {
  Put("x-Logo.scale-100_contrast-black.jpg");
  EXPECT_EQ(Find(L"Assets/Logo.png"), InAssets("x-Logo.scale-100_contrast-black.jpg"));
  EXPECT_EQ(Find(L"Assets/Lo.png"), L"");
}

TEST_F(SilentPackageLogo, SizeStandsAnywhereInTheName) {
  Put("other44x44thing");
  EXPECT_EQ(Find(L"Assets/Logo.png"), InAssets("other44x44thing"));
}

TEST_F(SilentPackageLogo, NamesAreCaseSensitive) {
  Put("Logo.Scale-100.png");
  Put("logo.scale-100.png");
  Put("Tile44X44.png");
  EXPECT_EQ(Find(L"Assets/Logo.png"), L"");
}

TEST_F(SilentPackageLogo, StemLosesItsLastExtensionOnly) {
  Put("a.b.scale-100.png");
  EXPECT_EQ(Find(L"Assets/a.b.png"), InAssets("a.b.scale-100.png"));
  EXPECT_EQ(Find(L"Assets/a.png"), L"");
  EXPECT_EQ(Find(L"Assets/a.b"), L"") << "the stem is then \"a\"";
}

TEST_F(SilentPackageLogo, NamedFileItselfIsNoVariant) {
  Put("Tile.png");
  EXPECT_EQ(Find(L"Assets/Tile.png"), L"");
}

TEST_F(SilentPackageLogo, DirectoriesAreNoLogos) {
  std::filesystem::create_directory(assets / "Logo.scale-100.png");
  std::filesystem::create_directory(assets / "44x44");
  EXPECT_EQ(Find(L"Assets/Logo.png"), L"");
  Put("Tile44x44.png");
  EXPECT_EQ(Find(L"Assets/Logo.png"), InAssets("Tile44x44.png"));
}

TEST_F(SilentPackageLogo, SubdirectoriesAreNotSearched) {
  std::filesystem::create_directory(assets / "deeper");
  Put("deeper/Logo.scale-100.png");
  EXPECT_EQ(Find(L"Assets/Logo.png"), L"");
}

TEST_F(SilentPackageLogo, WithoutADirectoryInItsNameLiesInThePackageItself) {
  const auto file = folder.File("Logo.scale-100.png");
  WriteBytes(file, "png");
  EXPECT_EQ(Find(L"Logo.png"), file.wstring());
}

TEST_F(SilentPackageLogo, AbsoluteNameReplacesThePackagesDirectory) {
  Put("Logo.scale-100.png");
  EXPECT_EQ(FindLogoVariant(folder.File("elsewhere").wstring(), InAssets("Logo.png")),
            InAssets("Logo.scale-100.png"));
}

TEST_F(SilentPackageLogo, UpwardNameLeadsOutOfThePackage) {
  Put("Logo.scale-100.png");
  std::filesystem::create_directory(folder.File("package"));
  const std::wstring package = folder.File("package").wstring();
  const std::filesystem::path found =
      std::filesystem::path(package) / ".." / "Assets" / "Logo.scale-100.png";
  EXPECT_EQ(std::filesystem::path(FindLogoVariant(package, L"../Assets/Logo.png")), found);
}

TEST_F(SilentPackageLogo, NameWithoutAFileMatchesAnyScaleVariant) {
  Put("Any.scale-100.png");
  EXPECT_EQ(Find(L"Assets/"), InAssets("Any.scale-100.png"));
}

TEST_F(PackageLogo, MissingDirectoryIsToldInFixedWords) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(Find(L"Missing/Logo.png"), L"");
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Error resolving icon path: directory_iterator::directory_iterator\n");
}

TEST_F(PackageLogo, FileInThePlaceOfTheDirectoryIsToldInTheSameWords) {
  Put("file");
  testing::internal::CaptureStderr();
  EXPECT_EQ(Find(L"Assets/file/Logo.png"), L"");
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Error resolving icon path: directory_iterator::directory_iterator\n");
}

TEST_F(SilentPackageLogo, ManifestStandsInThePackagesDirectory) {
  Put("Square44x44Logo.scale-100.png");
  std::vector<std::wstring> asked;
  const auto readManifest = [&](const std::wstring& path, std::wstring& logo) {
    EXPECT_EQ(logo, L"");
    asked.push_back(path);
    logo = kNamed;
  };
  EXPECT_EQ(FindManifestLogo(installed, readManifest), InAssets("Square44x44Logo.scale-100.png"));
  EXPECT_EQ(asked, std::vector<std::wstring>{installed + L"\\AppxManifest.xml"});
}

TEST_F(SilentPackageLogo, IsNotSearchedForWhereTheManifestNamesNone) {
  WriteBytes(folder.File("Tile44x44.png"), "png");
  EXPECT_EQ(FindManifestLogo(installed, [](const std::wstring&, std::wstring&) {}), L"");
}
