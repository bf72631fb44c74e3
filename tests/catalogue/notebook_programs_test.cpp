#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "catalogue/desktop_apps.h"
#include "catalogue/file_description.h"
#include "catalogue/icon_export.h"
#include "catalogue/png_file.h"
#include "installed_applications.h"
#include "simulated_calls.h"
#include "support/temp_folder.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;

// The desktop programs of the simulated notebook.
namespace {

constexpr char kDrive[] = "C:\\";
constexpr char kDevice[] = "\\Device\\HarddiskVolume3";

std::wstring Widen(std::string_view utf8) {
  const int length = static_cast<int>(utf8.size());
  std::wstring wide(utf8.size(), L'\0');
  wide.resize(static_cast<std::size_t>(
      MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, wide.data(), length)));
  return wide;
}

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c > 0; });
}

bool IsHere(const Standin::DesktopApp& app) { return app.onDisk == "here"; }

/// The version in an executable's fixed version data, as "1.2.3.4".
std::string FileVersion(const std::wstring& path) {
  DWORD ignored = 0;
  std::vector<BYTE> block(GetFileVersionInfoSizeW(path.c_str(), &ignored));
  VS_FIXEDFILEINFO* info = nullptr;
  UINT length = 0;
  if (block.empty() ||
      !GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()) ||
      !VerQueryValueW(block.data(), L"\\", reinterpret_cast<void**>(&info), &length)) {
    return "none";
  }
  std::string text;
  for (const DWORD part : {info->dwFileVersionMS, info->dwFileVersionLS}) {
    text += std::to_string(HIWORD(part)) + '.' + std::to_string(LOWORD(part)) + '.';
  }
  return text.substr(0, text.size() - 1);
}

/// The version that a program is registered with, in an uninstall root of the machine.
std::wstring RegisteredVersion(const Standin::DesktopApp& app) {
  const wchar_t* root = kUninstallRoots[app.registeredIn == "2" ? 1 : 0];
  const std::wstring key =
      std::wstring(root) + L"\\" + Widen(app.registeredName) + L' ' + Widen(app.version);
  wchar_t text[64] = {};
  DWORD bytes = sizeof(text) - sizeof(wchar_t);
  RegGetValueW(HKEY_LOCAL_MACHINE, key.c_str(), L"DisplayVersion", RRF_RT_REG_SZ, nullptr, text,
               &bytes);
  return text;
}

class NotebookPrograms : public testing::Test {
 protected:
  void SetUp() override {
    const std::string first = kDrive + std::string(Standin::kDesktopApps[0].program);
    if (GetFileAttributesA(first.c_str()) == INVALID_FILE_ATTRIBUTES) {
      GTEST_SKIP() << "the simulated notebook is not here";
    }
  }
};

}  // namespace

TEST_F(NotebookPrograms, ProgramsRegisteredForTheMachineAreInstalled) {
  DesktopApps apps;
  AddInstalledPrograms(apps);
  for (const auto& app : Standin::kDesktopApps) {
    if (app.registeredName.empty()) continue;
    // A program that is registered for one user is not registered for the machine.
    const bool isSeen = app.registeredIn != "user";
    EXPECT_EQ(apps.count(Widen(app.registeredName)), isSeen ? 1u : 0u) << app.registeredName;
  }
  EXPECT_EQ(apps.count(L"Teasel Tools"), 1u) << "removed, and still registered";
  EXPECT_EQ(apps.count(L"Pebble Player"), 0u);
  EXPECT_EQ(apps[L"Brook Browser"], L"\"C:\\Program Files\\Brook\\brook.exe\",0");
  EXPECT_EQ(apps[L"Lantern Video Editor"], L"\"C:\\Program Files\\Lantern\\lantern.exe\",0");
}

TEST_F(NotebookPrograms, OddRegistrationsAreReadByTheRules) {
  DesktopApps apps;
  AddInstalledPrograms(apps);
  EXPECT_EQ(apps.count(std::wstring(256, L'n')), 0u);
  EXPECT_EQ(apps.count(std::wstring(255, L'n')), 0u);
  ASSERT_EQ(apps.count(L"Long Icon Tool"), 1u);
  EXPECT_EQ(apps[L"Long Icon Tool"], L"");
  EXPECT_EQ(apps[L"Meadow Office"], L"") << "the second root has it without an icon";
}

TEST_F(NotebookPrograms, DescriptionsAreThoseOfTheirFiles) {
  for (const auto& app : Standin::kDesktopApps) {
    if (!IsHere(app) || !IsAscii(app.program) || !IsAscii(app.description)) continue;
    EXPECT_EQ(GetFileDescription(kDrive + std::string(app.program)), app.description)
        << app.program;
  }
}

TEST_F(NotebookPrograms, DescriptionsOutsideAsciiAreInTheSystemsCodePage) {
  // Code page 1252 contains the letter of the second description and none of the first.
  if (GetACP() != 1252) GTEST_SKIP() << "another code page";
  EXPECT_EQ(GetFileDescription("C:\\Program Files\\Glowworm\\glowworm.exe"), "Glowworm ??????");
  EXPECT_EQ(GetFileDescription("C:\\Program Files\\Brasserie\\brasserie.exe"), "Brasserie Caf\xE9");
  // The path in UTF-8, as in the reports, and then in the code page.
  EXPECT_EQ(GetFileDescription("C:\\Program Files\\\xC3\x9C"
                               "berblick\\\xC3\xBC"
                               "berblick.exe"),
            "");
  EXPECT_EQ(GetFileDescription("C:\\Program Files\\\xDC"
                               "berblick\\\xFC"
                               "berblick.exe"),
            "Overlook");
}

TEST_F(NotebookPrograms, RemovedProgramsAreNotOnDisk) {
  int removed = 0;
  for (const auto& app : Standin::kDesktopApps) {
    const DWORD attributes = GetFileAttributesW((L"C:\\" + Widen(app.program)).c_str());
    EXPECT_EQ(attributes != INVALID_FILE_ATTRIBUTES, IsHere(app)) << app.program;
    if (!IsHere(app)) ++removed;
  }
  EXPECT_EQ(removed, 2);
}

TEST_F(NotebookPrograms, RegisteredVersionsAreThoseOfTheirFiles) {
  std::map<std::string, int> programsOf;
  for (const auto& app : Standin::kDesktopApps) {
    if (!IsHere(app)) continue;
    const std::string version = FileVersion(L"C:\\" + Widen(app.program));
    EXPECT_EQ(version, app.version) << app.program;
    ++programsOf[version];
    if (app.registeredIn != "1" && app.registeredIn != "2") continue;
    EXPECT_EQ(RegisteredVersion(app), Widen(version)) << app.program;
  }
  EXPECT_GE(programsOf["4.2.0.0"], 2) << "two programs of one version";
}

TEST_F(NotebookPrograms, IconsHaveDifferentColours) {
  const TestSupport::TempFolder folder;
  const Standin::SimulatedCalls fake(GetModuleHandleW(nullptr), true);
  const std::wstring path = folder.Path();
  std::set<std::uint32_t> colours;
  for (const auto& app : Standin::kDesktopApps) {
    if (!IsHere(app) || !IsAscii(app.program)) continue;
    const std::string device = kDevice + std::string("\\") + std::string(app.program);
    static_cast<void>(
        ExportAppIcon(device, std::string(path.begin(), path.end()), "icon", kDevice));
    const auto picture = TestSupport::ReadPng(folder.File(L"icon.png"));
    EXPECT_EQ(picture.width, 32u) << app.program;
    EXPECT_EQ(picture.middle >> 24, 0xFFu) << app.program;
    colours.insert(picture.middle);
    DeleteFileW(folder.File(L"icon.png").c_str());
  }
  EXPECT_GT(colours.size(), Standin::kDesktopApps.size() / 2) << "most colours differ";
}
