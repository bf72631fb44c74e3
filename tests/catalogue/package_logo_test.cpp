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
class FindLogoVariantErrorTest : public testing::Test {
 protected:
  FindLogoVariantErrorTest() { std::filesystem::create_directory(assets); }

  void Put(const std::string& name) { WriteBytes(assets / name, "png"); }
  std::wstring Find(const std::wstring& named) { return FindLogoVariant(installed, named); }
  std::wstring InAssets(const std::string& name) { return (assets / name).wstring(); }

  ScratchFolder folder;
  const std::filesystem::path assets = folder.File("Assets");
  const std::wstring installed = assets.parent_path().wstring();
};

/// The same, and the test fails if anything is printed to standard error.
class FindLogoVariantTest : public FindLogoVariantErrorTest {
 protected:
  void SetUp() override { testing::internal::CaptureStderr(); }
  void TearDown() override { EXPECT_EQ(testing::internal::GetCapturedStderr(), ""); }
};

using FindManifestLogoTest = FindLogoVariantTest;

}  // namespace

TEST_F(FindLogoVariantTest, FindsTheScale100VariantOfTheNamedFile) {
  Put("Square44x44Logo.scale-200.png");
  Put("Square44x44Logo.scale-100.png");
  EXPECT_EQ(Find(kNamed), InAssets("Square44x44Logo.scale-100.png"));
}

TEST_F(FindLogoVariantTest, FindsASizeInTheSecondScan) {
  Put("Square44x44Logo.targetsize-44.png");
  EXPECT_EQ(Find(kNamed), InAssets("Square44x44Logo.targetsize-44.png"));
}

TEST_F(FindLogoVariantTest, PrefersTheFirstScanToTheSecond) {
  Put("a44x44.png");
  Put("AppList.scale-100.png");
  EXPECT_EQ(Find(L"Assets/AppList.png"), InAssets("AppList.scale-100.png"));
}

TEST_F(FindLogoVariantTest, MatchesStemAndSuffixAnywhereInTheName) {
  Put("x-Logo.scale-100_contrast-black.jpg");
  EXPECT_EQ(Find(L"Assets/Logo.png"), InAssets("x-Logo.scale-100_contrast-black.jpg"));
  EXPECT_EQ(Find(L"Assets/Lo.png"), L"");
}

TEST_F(FindLogoVariantTest, MatchesTheSizeAnywhereInTheName) {
  Put("other44x44thing");
  EXPECT_EQ(Find(L"Assets/Logo.png"), InAssets("other44x44thing"));
}

TEST_F(FindLogoVariantTest, ComparesNamesCaseSensitively) {
  Put("Logo.Scale-100.png");
  Put("logo.scale-100.png");
  Put("Tile44X44.png");
  EXPECT_EQ(Find(L"Assets/Logo.png"), L"");
}

TEST_F(FindLogoVariantTest, RemovesOnlyTheLastExtensionFromTheStem) {
  Put("a.b.scale-100.png");
  EXPECT_EQ(Find(L"Assets/a.b.png"), InAssets("a.b.scale-100.png"));
  EXPECT_EQ(Find(L"Assets/a.png"), L"");
  EXPECT_EQ(Find(L"Assets/a.b"), L"") << "the stem is then \"a\"";
}

TEST_F(FindLogoVariantTest, DoesNotReturnTheNamedFileItself) {
  Put("Tile.png");
  EXPECT_EQ(Find(L"Assets/Tile.png"), L"");
}

TEST_F(FindLogoVariantTest, IgnoresDirectories) {
  std::filesystem::create_directory(assets / "Logo.scale-100.png");
  std::filesystem::create_directory(assets / "44x44");
  EXPECT_EQ(Find(L"Assets/Logo.png"), L"");
  Put("Tile44x44.png");
  EXPECT_EQ(Find(L"Assets/Logo.png"), InAssets("Tile44x44.png"));
}

TEST_F(FindLogoVariantTest, DoesNotSearchSubdirectories) {
  std::filesystem::create_directory(assets / "deeper");
  Put("deeper/Logo.scale-100.png");
  EXPECT_EQ(Find(L"Assets/Logo.png"), L"");
}

TEST_F(FindLogoVariantTest, SearchesThePackageForANameWithoutADirectory) {
  const auto file = folder.File("Logo.scale-100.png");
  WriteBytes(file, "png");
  EXPECT_EQ(Find(L"Logo.png"), file.wstring());
}

TEST_F(FindLogoVariantTest, AbsoluteNameReplacesThePackagesDirectory) {
  Put("Logo.scale-100.png");
  EXPECT_EQ(FindLogoVariant(folder.File("elsewhere").wstring(), InAssets("Logo.png")),
            InAssets("Logo.scale-100.png"));
}

TEST_F(FindLogoVariantTest, UpwardNameLeadsOutOfThePackage) {
  Put("Logo.scale-100.png");
  std::filesystem::create_directory(folder.File("package"));
  const std::wstring package = folder.File("package").wstring();
  const std::filesystem::path found =
      std::filesystem::path(package) / ".." / "Assets" / "Logo.scale-100.png";
  EXPECT_EQ(std::filesystem::path(FindLogoVariant(package, L"../Assets/Logo.png")), found);
}

TEST_F(FindLogoVariantTest, NameWithoutAFileMatchesAnyScaleVariant) {
  Put("Any.scale-100.png");
  EXPECT_EQ(Find(L"Assets/"), InAssets("Any.scale-100.png"));
}

TEST_F(FindLogoVariantErrorTest, PrintsAFixedTextForAMissingDirectory) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(Find(L"Missing/Logo.png"), L"");
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Error resolving icon path: directory_iterator::directory_iterator\n");
}

TEST_F(FindLogoVariantErrorTest, PrintsAFixedTextForAFileAtTheDirectorysPath) {
  Put("file");
  testing::internal::CaptureStderr();
  EXPECT_EQ(Find(L"Assets/file/Logo.png"), L"");
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Error resolving icon path: directory_iterator::directory_iterator\n");
}

TEST_F(FindManifestLogoTest, ReadsTheManifestInThePackagesDirectory) {
  Put("Square44x44Logo.scale-100.png");
  std::vector<std::wstring> manifests;
  const auto readManifest = [&](const std::wstring& path, std::wstring& logo) {
    EXPECT_EQ(logo, L"");
    manifests.push_back(path);
    logo = kNamed;
  };
  EXPECT_EQ(FindManifestLogo(installed, readManifest), InAssets("Square44x44Logo.scale-100.png"));
  EXPECT_EQ(manifests, std::vector<std::wstring>{installed + L"\\AppxManifest.xml"});
}

TEST_F(FindManifestLogoTest, DoesNotSearchWhenTheManifestNamesNoLogo) {
  WriteBytes(folder.File("Tile44x44.png"), "png");
  EXPECT_EQ(FindManifestLogo(installed, [](const std::wstring&, std::wstring&) {}), L"");
}
