#include "package_files.h"

#include <windows.h>

#include <gtest/gtest.h>
#include <objidl.h>

#include <algorithm>
#include <filesystem>
#include <string>

namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus
#include <gdiplus.h>

#include "catalogue/package_manifest.h"
#include "support/temp_folder.h"

using Standin::PackagedApp;
using namespace Standin::Packages;
using TestSupport::FileExists;
using TestSupport::TempFolder;

namespace {

constexpr wchar_t kFolder[] = L"Some.App_1.0.0.0_x64__abc";

/// The drawing library for as long as this lives.
class Drawing {
 public:
  Drawing() {
    const Gdiplus::GdiplusStartupInput input;
    Gdiplus::GdiplusStartup(&token_, &input, nullptr);
  }
  Drawing(const Drawing&) = delete;
  Drawing& operator=(const Drawing&) = delete;
  ~Drawing() { Gdiplus::GdiplusShutdown(token_); }

 private:
  ULONG_PTR token_ = 0;
};

/// One package's files in a folder of the test.
class PackageFiles : public testing::Test {
 protected:
  void Write(std::string_view logo) {
    WritePackage(root.Path(), PackagedApp{"Some.App", "abc", "Some App", "app", logo});
  }
  std::wstring File(const std::wstring& name) const { return root.File(kFolder) + L"\\" + name; }
  bool Has(const std::wstring& asset) const { return FileExists(File(L"Assets\\" + asset)); }

  TempFolder root;
};

}  // namespace

TEST_F(PackageFiles, LogosAreImages) {
  Write("scale");
  const Drawing drawing;
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

TEST_F(PackageFiles, HoldTheLogosThatTheKindOfLogoWants) {
  Write("scale");
  EXPECT_TRUE(Has(L"Square44x44Logo.scale-100.png"));
  EXPECT_TRUE(Has(L"Square44x44Logo.scale-200.png"));
  EXPECT_FALSE(Has(L"Square44x44Logo.png"));
  Write("size");
  EXPECT_TRUE(Has(L"Square44x44Logo.targetsize-44.png"));
  EXPECT_FALSE(Has(L"StoreLogo.png"));
  Write("own");
  EXPECT_TRUE(Has(L"StoreLogo.png"));
}

TEST_F(PackageFiles, ManifestNamesALogoWhereThereIsOneForIt) {
  using Zq::Gantry::Server::Services::Wattleaf::TryReadManifestLogo;
  for (const char* logo : {"scale", "size"}) {
    Write(logo);
    EXPECT_EQ(TryReadManifestLogo(File(L"AppxManifest.xml")), L"Assets\\Square44x44Logo.png");
  }
  for (const char* logo : {"own", "none"}) {
    Write(logo);
    EXPECT_EQ(TryReadManifestLogo(File(L"AppxManifest.xml")), std::nullopt);
  }
}
