#include <gtest/gtest.h>
#include <share.h>

#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "catalogue/fake_packages.h"
#include "collection/open_helper.h"
#include "package_files.h"
#include "platform/winrt/calls.h"
#include "support/log_capture.h"

using namespace TestSupport;
using Standin::ImportPatch;
using Zq::Gantry::Platform::WinRt::CallFailure;
using Zq::Gantry::Server::Services::Wattleaf::PackagedApps;
using Records = std::vector<LogRecord>;
using Names = std::vector<std::string>;

namespace {

const LogRecord kPackageFailed = Error(L"Error while processing packages.");
const LogRecord kManifestFailed = Error(L"Error parsing AppxManifest.xml");

/// A helper, and packages that each have a logo named by their manifest and one of their own.
class LoadInstalledUWPApps : public PackagesTest {
 protected:
  void AddApp(const std::wstring& folder, const std::string& name, const std::string& words = "") {
    packages.Add(folder, "name=" + name + "\nshown=" + name +
                             " shown\nlogo=own.png\nscript=" + words + "\n");
    const std::wstring path = packages.Folder(folder);
    CreateDirectoryW((path + L"\\Assets").c_str(), nullptr);
    WriteWholeFile(path + L"\\Assets\\Tile.scale-100.png", "png");
    WriteManifest(folder, "Assets\\Tile.png");
  }
  void WriteManifest(const std::wstring& folder, const std::string& named) {
    WriteWholeFile(packages.Folder(folder) + L"\\AppxManifest.xml",
                   "<Package><Applications><Application><uap:VisualElements Square44x44Logo=\"" +
                       named + "\"/></Application></Applications></Package>");
  }
  Names Load() {
    helper.LoadInstalledUWPApps();
    Names names;
    for (const auto& [name, record] : *helper.uwpApps.Current()) names.push_back(name);
    return names;
  }
  /// The logo's file name; empty if there is no such application.
  std::string LogoOf(const std::string& name) const {
    const auto apps = helper.uwpApps.Current();
    const auto found = apps->find(name);
    if (found == apps->end()) return {};
    return std::filesystem::path(found->second.Logo).filename().string();
  }

  OpenHelper helper;
  LogCapture log;
};

/// One manifest file and the helper that parses it.
class ParseManifest : public testing::Test {
 protected:
  void Parse(const std::string& text) {
    WriteWholeFile(path, text);
    helper.ParseManifest(path, displayName, logo);
  }

  TempFolder folder;
  const std::wstring path = folder.File(L"AppxManifest.xml");
  std::wstring displayName = L"untouched";
  std::wstring logo = L"before";
  OpenHelper helper;
  LogCapture log;
};

/// Throws for manifests and opens every other file.
std::FILE* ThrowForManifests(const wchar_t* path, const wchar_t* mode) {
  if (std::wstring(path).ends_with(L"AppxManifest.xml")) throw 5;  // not a std::exception
  return _wfsopen(path, mode, _SH_DENYNO);
}

}  // namespace

TEST_F(LoadInstalledUWPApps, LoadsTheSimulatedNotebooksApplications) {
  for (const auto& app : Standin::kPackagedApps) {
    Standin::Packages::WritePackage(packages.root.Path(), app);
  }
  EXPECT_EQ(Load(), (Names{"Alder.Wallet",   "Aster.Camera",   "Birch.Backup",   "Ember.Video",
                           "Finch.Music",    "Gorse.Radio",    "Hornbeam.Suite", "Ivy.Reader",
                           "Larch.Calendar", "Moss.Puzzle",    "Orchard.Notes",  "Orchard.NotesPro",
                           "Otter.Chat",     "Poplar.Journal", "Privet.Paint",   "Rowan.Fitness",
                           "Tansy.Clock",    "Tilia.Menu",     "Willow.Weather", "Yarrow.Books"}));
  EXPECT_EQ(helper.uwpApps.Current()->at("Orchard.NotesPro").DisplayName, "Orchard Notes Pro");
  EXPECT_EQ(LogoOf("Orchard.Notes"), "Square44x44Logo.scale-100.png");
  EXPECT_EQ(LogoOf("Willow.Weather"), "Square44x44Logo.targetsize-44.png");
  EXPECT_EQ(LogoOf("Larch.Calendar"), "StoreLogo.png");
  EXPECT_EQ(log.Records(), Records{});
}

TEST_F(LoadInstalledUWPApps, StoresTheFullPathOfTheLogoNamedByTheManifest) {
  AddApp(L"a", "App");
  EXPECT_EQ(Load(), Names{"App"});
  EXPECT_EQ(
      helper.uwpApps.Current()->at("App").Logo,
      std::filesystem::path(packages.Folder(L"a") + L"\\Assets\\Tile.scale-100.png").string());
}

TEST_F(LoadInstalledUWPApps, KeepsThePackagesOwnLogoWhenTheManifestNamesAnImpossiblePath) {
  AddApp(L"a", "App");
  // An unpaired surrogate, a device, characters that are invalid in names, and a huge name.
  for (const std::string& named :
       {std::string("&#xD800;\\Tile.png"), std::string("\\\\.\\nowhere\\Tile.png"),
        std::string("*?&lt;&gt;|\\Tile.png"), std::string(1'000'000, 'x') + "\\Tile.png"}) {
    helper.uwpApps.Replace({});
    WriteManifest(L"a", named);
    testing::internal::CaptureStderr();
    EXPECT_EQ(Load(), Names{"App"});
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Error resolving icon path: directory_iterator::directory_iterator\n");
    EXPECT_EQ(LogoOf("App"), "own.png") << named.substr(0, 20);
  }
  EXPECT_EQ(log.Records(), Records{});
}

TEST_F(LoadInstalledUWPApps, SkipsOrKeepsAPackageByWhichPropertyFails) {
  struct Case {
    const char* words;
    bool enters;
    const char* logo;
    bool isLogged;
  };
  constexpr const char* kManifestLogo = "Tile.scale-100.png";
  const std::vector<Case> cases = {
      {"null:Current", false, "", true},
      {"fail:Current=80004005", false, "", true},
      {"fail:IsFramework=80004005", false, "", true},
      {"fail:IPackage4=80004002", false, "", true},
      {"fail:SignatureKind=80004005", false, "", true},
      {"fail:Id=80004005", false, "", true},
      {"null:Id", false, "", true},
      {"fail:Name=80004005", false, "", true},
      {"fail:IPackage2=80004002", false, "", false},
      {"fail:DisplayName=80004005", false, "", false},
      {"fail:InstalledLocation=80004005", true, "own.png", false},
      {"null:InstalledLocation", true, "own.png", false},
      {"fail:IStorageItem=80004002", true, "own.png", false},
      {"fail:Path=80004005", true, "own.png", false},
      {"fail:Logo=80004005", true, kManifestLogo, false},
      {"fail:Path=80004005,fail:Logo=80004005", false, "", false},
      {"fail:Path=80004005,null:Logo", false, "", false},
      {"fail:Path=80004005,fail:LogoPath=80004005", false, "", false},
  };
  for (const Case& c : cases) {
    helper.uwpApps.Replace({});
    log.Clear();
    AddApp(L"a", "Before");
    AddApp(L"b", "App", c.words);
    AddApp(L"c", "Later");
    EXPECT_EQ(Load(), c.enters ? (Names{"App", "Before", "Later"}) : (Names{"Before", "Later"}))
        << c.words;
    EXPECT_EQ(LogoOf("App"), c.logo) << c.words;
    EXPECT_EQ(log.Records(), c.isLogged ? Records{kPackageFailed} : Records{}) << c.words;
  }
}

TEST_F(LoadInstalledUWPApps, ThrowsAndKeepsTheCatalogueWhenTheEnumerationCannotStart) {
  helper.uwpApps.Replace({{"Old", {"old", "old.png"}}});
  for (const char* words :
       {"fail:ActivateInstance=80040154", "fail:FindPackages=80070005", "null:FindPackages",
        "fail:First=80004005", "fail:HasCurrent=80004005"}) {
    packages.script = {};
    EXPECT_TRUE(packages.script.Add(words));
    AddApp(L"a", "App");
    EXPECT_THROW(helper.LoadInstalledUWPApps(), CallFailure) << words;
    EXPECT_EQ(helper.uwpApps.Current()->size(), 1U) << words;
  }
  EXPECT_EQ(log.Records(), Records{});
}

TEST_F(LoadInstalledUWPApps, ThrowsAndKeepsTheCatalogueWhenTheEnumerationCannotAdvance) {
  AddApp(L"a", "First", "fail:MoveNext=80004005");
  AddApp(L"b", "Second");
  EXPECT_THROW(helper.LoadInstalledUWPApps(), CallFailure);
  EXPECT_TRUE(helper.uwpApps.Current()->empty());
  EXPECT_EQ(log.Records(), Records{});
}

TEST_F(LoadInstalledUWPApps, ReplacesAndAddsButNeverRemovesApplications) {
  AddApp(L"a", "Kept");
  AddApp(L"b", "Changed");
  Load();
  DeleteFileW((packages.Folder(L"a") + L"\\package.txt").c_str());
  AddApp(L"b", "Changed", "fail:Path=80004005");
  AddApp(L"c", "New");
  EXPECT_EQ(Load(), (Names{"Changed", "Kept", "New"}));
  EXPECT_EQ(LogoOf("Changed"), "own.png");
}

TEST_F(LoadInstalledUWPApps, LeavesACatalogueTakenByAReaderUnchanged) {
  const auto taken = helper.uwpApps.Current();
  AddApp(L"a", "App");
  EXPECT_EQ(Load(), Names{"App"});
  EXPECT_TRUE(taken->empty());
}

TEST_F(LoadInstalledUWPApps, LogsAManifestThatThrowsOnceAndUsesThePackagesOwnLogo) {
  AddApp(L"a", "App");
  const ImportPatch patch("_wfopen", &ThrowForManifests);
  EXPECT_EQ(Load(), Names{"App"});
  EXPECT_EQ(LogoOf("App"), "own.png");
  EXPECT_EQ(log.Records(), Records{kManifestFailed});
}

TEST_F(ParseManifest, ReturnsTheLogoAndLeavesTheDisplayName) {
  Parse(
      "<Package><Applications><Application><uap:VisualElements DisplayName=\"App\" "
      "Square44x44Logo=\"Assets\\Tile.png\"/></Application></Applications></Package>");
  EXPECT_EQ(logo, L"Assets\\Tile.png");
  EXPECT_EQ(displayName, L"untouched");
}

TEST_F(ParseManifest, ReturnsAnEmptyLogoForAnEmptyAttribute) {
  Parse(
      "<Package><Applications><Application><uap:VisualElements Square44x44Logo=\"\"/>"
      "</Application></Applications></Package>");
  EXPECT_EQ(logo, L"");
}

TEST_F(ParseManifest, LeavesTheLogoWhenTheManifestHasNone) {
  helper.ParseManifest(folder.File(L"missing.xml"), displayName, logo);
  EXPECT_EQ(logo, L"before");
  Parse("<Package/>");
  EXPECT_EQ(logo, L"before");
  Parse("<Package>");
  EXPECT_EQ(logo, L"before");
  EXPECT_EQ(log.Records(), Records{});
}

TEST_F(ParseManifest, LogsAnyExceptionAndLeavesTheLogo) {
  const ImportPatch patch("_wfopen", &ThrowForManifests);
  helper.ParseManifest(path, displayName, logo);
  EXPECT_EQ(logo, L"before");
  EXPECT_EQ(log.Records(), Records{kManifestFailed});
}
