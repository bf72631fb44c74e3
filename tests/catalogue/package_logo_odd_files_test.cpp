#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "catalogue/package_logo.h"
#include "ledger/scratch_folder.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::ScratchFolder;
using TestSupport::WriteBytes;

TEST(OddPackageLogo, TakesADirectoryNameThatCanBeOpened) {
  const ScratchFolder folder;
  WriteBytes(folder.File("package\\"), "a file whose name ends in a backslash");
  const std::wstring installed = folder.File("package").wstring();
  bool asked = false;
  const auto readManifest = [&](const std::wstring&, std::wstring&) { asked = true; };
  EXPECT_EQ(FindManifestLogo(installed, readManifest), installed + L"\\");
  EXPECT_FALSE(asked);
}

TEST(OddPackageLogo, OtherFailuresOfTheScanAreToldInTheirOwnWords) {
  const ScratchFolder folder;
  std::filesystem::create_symlink("loop", folder.File("loop"));
  testing::internal::CaptureStderr();
  EXPECT_EQ(FindLogoVariant(folder.File("").wstring(), L"Logo.png"), L"");
  const std::string told = testing::internal::GetCapturedStderr();
  EXPECT_TRUE(told.starts_with("Error resolving icon path: ")) << told;
  EXPECT_NE(told.find("Too many levels of symbolic links"), std::string::npos) << told;
  EXPECT_EQ(told.find('\n'), told.size() - 1) << told;
}
