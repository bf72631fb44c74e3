#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "base/scratch_folder.h"
#include "catalogue/package_logo.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::ScratchFolder;
using TestSupport::WriteBytes;

// Names, links and a directory order that only a POSIX system lets a test create.
namespace {

/// Captures standard error from construction to `Text`.
class CapturedError {
 public:
  CapturedError() { testing::internal::CaptureStderr(); }
  [[nodiscard]] std::string Text() { return testing::internal::GetCapturedStderr(); }
};

std::string LogoNumber(int number) { return "logo" + std::to_string(number) + "x"; }

/// The names in the directory's own order.
std::vector<std::string> NamesIn(const std::filesystem::path& directory) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(directory)) {
    names.push_back(entry.path().filename().string());
  }
  return names;
}

}  // namespace

TEST(FindManifestLogo, ReturnsADirectoryPathThatCanBeOpenedAsAFile) {
  const ScratchFolder folder;
  WriteBytes(folder.File("package\\"), "a file whose name ends in a backslash");
  const std::wstring installed = folder.File("package").wstring();
  bool isManifestRead = false;
  const auto readManifest = [&](const std::wstring&, std::wstring&) { isManifestRead = true; };
  EXPECT_EQ(FindManifestLogo(installed, readManifest), installed + L"\\");
  EXPECT_FALSE(isManifestRead);
}

TEST(FindLogoVariant, PrintsAFixedTextForAnyFailureOfTheScan) {
  const ScratchFolder folder;
  std::filesystem::create_symlink("loop", folder.File("loop"));
  CapturedError error;
  EXPECT_EQ(FindLogoVariant(folder.File("").wstring(), L"Logo.png"), L"");
  EXPECT_EQ(error.Text(), "Error resolving icon path: directory_iterator::directory_iterator\n");
}

TEST(FindLogoVariant, IgnoresEntriesThatAreNotPlainFiles) {
  const ScratchFolder folder;
  std::filesystem::create_symlink("nowhere", folder.File("Logo.scale-100.png"));
  std::filesystem::create_symlink("/dev/null", folder.File("44x44"));
  CapturedError error;
  EXPECT_EQ(FindLogoVariant(folder.File("").wstring(), L"Logo.png"), L"");
  EXPECT_EQ(error.Text(), "");
}

// The file system determines the order of the entries, so the expected results follow from it.
TEST(FindLogoVariant, FindsEntriesBeforeAFailingEntryAndNoneAfterIt) {
  const ScratchFolder folder;
  for (int n = 0; n < 20; ++n) WriteBytes(folder.File(LogoNumber(n) + ".scale-100.png"), "png");
  std::filesystem::create_symlink("loop", folder.File("loop"));
  for (int n = 20; n < 40; ++n) WriteBytes(folder.File(LogoNumber(n) + ".scale-100.png"), "png");

  const std::filesystem::path directory = folder.File("loop").parent_path();
  bool hasFailed = false;
  for (const std::string& name : NamesIn(directory)) {
    hasFailed |= name == "loop";
    if (name == "loop") continue;
    const std::wstring named = std::filesystem::path(name.substr(0, name.find('.'))).wstring();
    CapturedError error;
    EXPECT_EQ(FindLogoVariant(directory.wstring(), named + L".png"),
              hasFailed ? L"" : (directory / name).wstring())
        << name;
    EXPECT_EQ(error.Text().empty(), !hasFailed) << name;
  }
}

TEST(FindLogoVariant, PrefersTheFirstMatchInTheDirectorysOrder) {
  const ScratchFolder folder;
  for (int n = 0; n < 20; ++n) WriteBytes(folder.File(LogoNumber(n) + ".scale-100.png"), "png");
  for (int n = 0; n < 20; ++n) WriteBytes(folder.File("tile44x44" + LogoNumber(n)), "png");
  const std::filesystem::path directory = folder.File("any").parent_path();
  const auto names = NamesIn(directory);
  const auto first = [&](const std::string& part) {
    const auto has = [&](const std::string& name) { return name.find(part) != std::string::npos; };
    return (directory / *std::find_if(names.begin(), names.end(), has)).wstring();
  };
  EXPECT_EQ(FindLogoVariant(directory.wstring(), L"x.png"), first("x.scale-100"));
  EXPECT_EQ(FindLogoVariant(directory.wstring(), L"other.png"), first("44x44"));
}
