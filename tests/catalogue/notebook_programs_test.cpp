#include <windows.h>

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "catalogue/desktop_apps.h"
#include "catalogue/file_description.h"
#include "catalogue/icon_export.h"
#include "catalogue/png_file.h"
#include "installed_applications.h"
#include "played_calls.h"
#include "support/temp_folder.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;

// The desktop programs of the simulated notebook, as the library finds them.
namespace {

constexpr char kPrograms[] = "C:\\Program Files\\";
constexpr char kDevice[] = "\\Device\\HarddiskVolume3";

std::wstring Widen(std::string_view ascii) { return std::wstring(ascii.begin(), ascii.end()); }

class NotebookPrograms : public testing::Test {
 protected:
  void SetUp() override {
    const std::string first = kPrograms + std::string(Standin::kDesktopApps[0].program);
    if (GetFileAttributesA(first.c_str()) == INVALID_FILE_ATTRIBUTES) {
      GTEST_SKIP() << "the simulated notebook is not here";
    }
  }
};

}  // namespace

TEST_F(NotebookPrograms, ThatAreRegisteredAreInstalled) {
  DesktopApps apps;
  AddInstalledPrograms(apps);
  for (const auto& app : Standin::kDesktopApps) {
    if (app.registeredName.empty()) continue;
    EXPECT_EQ(apps.count(Widen(app.registeredName)), 1u) << app.registeredName;
  }
  EXPECT_EQ(apps.count(L"Pebble Player"), 0u);
  EXPECT_EQ(apps[L"Brook Browser"], L"\"C:\\Program Files\\Brook\\brook.exe\",0");
  EXPECT_EQ(apps[L"Lantern Video Editor"], L"\"C:\\Program Files\\Lantern\\lantern.exe\",0");
}

TEST_F(NotebookPrograms, ThatAreOddlyRegisteredAreReadAsTheRulesSay) {
  DesktopApps apps;
  AddInstalledPrograms(apps);
  EXPECT_EQ(apps.count(std::wstring(256, L'n')), 0u);
  EXPECT_EQ(apps.count(std::wstring(255, L'n')), 0u);
  ASSERT_EQ(apps.count(L"Long Icon Tool"), 1u);
  EXPECT_EQ(apps[L"Long Icon Tool"], L"");
  EXPECT_EQ(apps[L"Meadow Office"], L"") << "the second root has it without an icon";
}

TEST_F(NotebookPrograms, DescribeThemselves) {
  for (const auto& app : Standin::kDesktopApps) {
    EXPECT_EQ(GetFileDescription(kPrograms + std::string(app.program)), app.description)
        << app.program;
  }
}

TEST_F(NotebookPrograms, HaveIconsOfTheirOwnColours) {
  const TestSupport::TempFolder folder;
  const Standin::PlayedCalls played(GetModuleHandleW(nullptr), true);
  const std::wstring path = folder.Path();
  std::set<std::uint32_t> colours;
  for (const auto& app : Standin::kDesktopApps) {
    const std::string device =
        kDevice + std::string("\\Program Files\\") + std::string(app.program);
    ExportAppIcon(device, std::string(path.begin(), path.end()), "icon", kDevice);
    const auto picture = TestSupport::ReadPng(folder.File(L"icon.png"));
    EXPECT_EQ(picture.width, 32u) << app.program;
    EXPECT_EQ(picture.middle >> 24, 0xFFu) << app.program;
    colours.insert(picture.middle);
    DeleteFileW(folder.File(L"icon.png").c_str());
  }
  EXPECT_GT(colours.size(), Standin::kDesktopApps.size() / 2) << "most colours differ";
}
