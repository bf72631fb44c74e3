#include "package_files.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>

#include "catalogue/package_logo.h"
#include "platform/win32/gdiplus_owners.h"
#include "support/temp_folder.h"

using Standin::PackagedApp;
using Zq::Gantry::Platform::GdiplusSession;
using namespace Standin::Packages;
using testing::HasSubstr;
using TestSupport::FileExists;
using TestSupport::TempFolder;

namespace {

constexpr wchar_t kFolder[] = L"Some.App_1.0.0.0_x64__abc";

/// The files of one package in a folder of the test.
class PackageFiles : public testing::Test {
 protected:
  void Write(std::string_view logo) {
    WritePackage(root.Path(),
                 PackagedApp{"Some.App", "abc", "1.0.0.0", "Some App", "app", logo, "App"});
  }
  void WriteApplications(std::string_view logo, std::string_view applications) {
    WritePackage(root.Path(),
                 PackagedApp{"Some.App", "abc", "1.0.0.0", "Some App", "app", logo, applications});
  }
  std::string Manifest() const { return TestSupport::ReadWholeFile(File(L"AppxManifest.xml")); }
  std::set<std::wstring> Assets() const {
    std::set<std::wstring> names;
    for (const auto& entry : std::filesystem::directory_iterator(File(L"Assets"))) {
      names.insert(entry.path().filename().wstring());
    }
    return names;
  }
  std::wstring File(const std::wstring& name) const { return root.File(kFolder) + L"\\" + name; }
  bool Has(const std::wstring& asset) const { return FileExists(File(L"Assets\\" + asset)); }

  TempFolder root;
};

}  // namespace

TEST_F(PackageFiles, LogosAreImages) {
  Write("scale");
  const GdiplusSession session;
  Gdiplus::Bitmap image(File(L"Assets\\Square44x44Logo.scale-100.png").c_str());
  ASSERT_EQ(image.GetLastStatus(), Gdiplus::Ok);
  EXPECT_EQ(image.GetWidth(), 44U);
  EXPECT_EQ(image.GetHeight(), 44U);
  Gdiplus::Color centre;
  Gdiplus::Color corner;
  image.GetPixel(22, 22, &centre);
  image.GetPixel(0, 0, &corner);
  EXPECT_EQ(centre.GetAlpha(), 255);
  EXPECT_EQ(corner.GetAlpha(), 0);
}

TEST_F(PackageFiles, LogosFollowFromTheKindOfLogo) {
  const std::pair<const char*, std::set<std::wstring>> kinds[] = {
      {"scale",
       {L"Square44x44Logo.contrast-white_scale-100.png", L"Square44x44Logo.scale-100.png",
        L"Square44x44Logo.scale-100_contrast-black.png", L"Square44x44Logo.scale-200.png",
        L"Square44x44Logo.targetsize-44_altform-unplated.png"}},
      {"size", {L"Square44x44Logo.targetsize-44.png"}},
      {"scale200", {L"Square44x44Logo.scale-200.png"}},
      {"large", {L"AppList.scale-200.png", L"StoreLogo.png"}},
      {"variants",
       {L"Square44x44Logo.altform-unplated_targetsize-44.png",
        L"Square44x44Logo.contrast-black_scale-100.png", L"Square44x44Logo.scale-200.png"}},
      {"contrast",
       {L"Square44x44Logo.altform-unplated_targetsize-44.png",
        L"Square44x44Logo.scale-100_contrast-black.png", L"Square44x44Logo.scale-200.png"}},
      {"own", {L"StoreLogo.png"}},
      {"none", {}},
  };
  for (const auto& [kind, files] : kinds) {
    std::filesystem::remove_all(File(L"Assets"));
    Write(kind);
    EXPECT_EQ(Assets(), files) << kind;
  }
}

TEST_F(PackageFiles, VariantsOfALogoDiffer) {
  Write("scale");
  std::set<std::string> contents;
  for (const std::wstring& name : Assets()) {
    contents.insert(TestSupport::ReadWholeFile(File(L"Assets\\" + name)));
  }
  EXPECT_EQ(contents.size(), Assets().size());
}

TEST_F(PackageFiles, ManifestHasEachApplicationOfTheList) {
  WriteApplications("scale", "-Service,Panel");
  EXPECT_THAT(Manifest(), HasSubstr("<Application Id=\"Service\">\n    </Application>\n"
                                    "    <Application Id=\"Panel\">\n      <uap:VisualElements"));
  EXPECT_THAT(Manifest(), HasSubstr("Square44x44Logo=\"Assets\\Later44x44Logo.png\""));
  EXPECT_TRUE(Has(L"Later44x44Logo.scale-100.png"));
}

TEST_F(PackageFiles, UnknownKindOfLogoThrows) { EXPECT_THROW(Write("other"), std::runtime_error); }

TEST_F(PackageFiles, ManifestNamesALogoOnlyForKindsThatHaveOne) {
  using Zq::Gantry::Server::Services::Wattleaf::TryReadManifestLogo;
  for (const char* logo : {"scale", "size", "scale200", "variants", "contrast"}) {
    Write(logo);
    EXPECT_EQ(TryReadManifestLogo(File(L"AppxManifest.xml")), L"Assets\\Square44x44Logo.png");
  }
  for (const char* logo : {"own", "none"}) {
    Write(logo);
    EXPECT_EQ(TryReadManifestLogo(File(L"AppxManifest.xml")), std::nullopt);
  }
}
