#include "catalogue/icon_finder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "catalogue/recording_icon_maker.h"

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::kIconDirectory;
using TestSupport::RecordingIconMaker;
using Zq::Gantry::Server::Services::Wattleaf::IconFile;
using Zq::Gantry::Server::Services::Wattleaf::IconFinder;
using Zq::Gantry::Server::Services::Wattleaf::PackagedApps;

constexpr char kExecutable[] = "\\Device\\HarddiskVolume3\\Tools\\a.exe";

/// The icon of one application.
std::string IconOf(const PackagedApps& apps, RecordingIconMaker& icons, const std::string& appId,
                   const std::string& displayName, std::string_view directory = kIconDirectory) {
  return IconFinder(apps, directory, icons).Make(appId, displayName);
}

bool IsMatch(const std::string& packageName, const std::string& appId) {
  RecordingIconMaker icons;
  return !IconOf({{packageName, {}}}, icons, appId, "Meadow").empty();
}

TEST(IconFile, IsAPngOfTheDisplayNameInTheDirectory) {
  EXPECT_EQ((IconFile{"C:\\Icons", "Meadow"}.Path()), "C:\\Icons\\Meadow.png");
  EXPECT_EQ((IconFile{"", ""}.Path()), "\\.png");
}

TEST(IconFile, StaysInDirectoryForAnOrdinaryName) {
  EXPECT_TRUE((IconFile{"C:\\Icons"sv, "Meadow Office (2026)"sv}.StaysInDirectory()));
  EXPECT_TRUE((IconFile{""sv, ".."sv}.StaysInDirectory()));
  EXPECT_TRUE((IconFile{"\\\\server\\share"sv, ""sv}.StaysInDirectory()));
}

TEST(IconFile, LeavesDirectoryForASeparatorOrAColonInTheName) {
  EXPECT_FALSE((IconFile{"C:\\Icons"sv, "..\\..\\Windows\\x"sv}.StaysInDirectory()));
  EXPECT_FALSE((IconFile{"C:\\Icons"sv, "../x"sv}.StaysInDirectory()));
  EXPECT_FALSE((IconFile{"C:\\Icons"sv, "x:stream"sv}.StaysInDirectory()));
}

TEST(IconFile, LeavesDirectoryForAZeroInEitherText) {
  EXPECT_FALSE((IconFile{"C:\\Icons"sv, "x\0y"sv}.StaysInDirectory()));
  EXPECT_FALSE((IconFile{"C:\\Ic\0ons"sv, "x"sv}.StaysInDirectory()));
}

TEST(IconFinder, ExportsTheIconOfAnExecutable) {
  RecordingIconMaker icons;
  icons.exported = "C:\\Icons\\Meadow.png";
  const PackagedApps everything{{"", {"All", "all.png"}}};
  EXPECT_EQ(IconOf(everything, icons, kExecutable, "Meadow"), "C:\\Icons\\Meadow.png");
  EXPECT_THAT(icons.exports,
              ElementsAre("\\Device\\HarddiskVolume3\\Tools\\a.exe|C:\\Icons|Meadow"));
  EXPECT_THAT(icons.copies, IsEmpty());
}

TEST(IconFinder, CopiesTheLogoOfAPackage) {
  RecordingIconMaker icons;
  const PackagedApps apps{{"Alder.Meadow", {"Meadow", "C:\\Apps\\logo.png"}}};
  EXPECT_EQ(IconOf(apps, icons, "Alder.Meadow_1.0_x64", "Shown Name"), "C:\\Icons\\Shown Name.png");
  EXPECT_THAT(icons.copies, ElementsAre("C:\\Apps\\logo.png|C:\\Icons\\Shown Name.png"));
  EXPECT_THAT(icons.exports, IsEmpty());
}

TEST(IconFinder, ReturnsNothingWithoutAMatchingPackage) {
  RecordingIconMaker icons;
  EXPECT_EQ(IconOf({{"Birch", {}}}, icons, "Alder.Meadow", "Meadow"), "");
  EXPECT_THAT(icons.copies, IsEmpty());
}

TEST(IconFinder, MatchesAPackageByTheBeginningOfTheIdentity) {
  EXPECT_TRUE(IsMatch("Alder", "Alder"));
  EXPECT_TRUE(IsMatch("Alder", "Alder.Meadow"));
  EXPECT_FALSE(IsMatch("Alder.Meadow", "Alder"));
  EXPECT_FALSE(IsMatch("alder", "Alder"));
  EXPECT_FALSE(IsMatch("Alder", "The Alder"));
  EXPECT_TRUE(IsMatch("", "Alder"));
  EXPECT_TRUE(IsMatch("", ""));
  EXPECT_FALSE(IsMatch("Alder", ""));
}

TEST(IconFinder, EndsAnIdentityAtItsFirstZero) {
  EXPECT_TRUE(IsMatch("Alder", "Alder\0Meadow"s));
  EXPECT_FALSE(IsMatch("AlderMeadow", "Alder\0Meadow"s));
  EXPECT_TRUE(IsMatch("Alder\0Birch"s, "Alder\0Meadow"s));
}

TEST(IconFinder, TreatsOnlyPathsInTheDeviceFolderAsExecutables) {
  RecordingIconMaker icons;
  icons.exported = "x";
  EXPECT_EQ(IconOf({}, icons, "\\Device", "Meadow"), "");
  EXPECT_EQ(IconOf({}, icons, "\\device\\a.exe", "Meadow"), "");
  EXPECT_EQ(IconOf({}, icons, "\\Device\\", "Meadow"), "x");
}

TEST(IconFinder, UsesTheLastMatchingPackage) {
  RecordingIconMaker icons;
  icons.onlyLogo = "short";
  const PackagedApps apps{{"Alder", {"", "short"}}, {"Alder.Meadow", {"", "long"}}};
  EXPECT_EQ(IconOf(apps, icons, "Alder.Meadow.Tool", "Meadow"), "");
  EXPECT_THAT(icons.copies,
              ElementsAre("short|C:\\Icons\\Meadow.png", "long|C:\\Icons\\Meadow.png"));
  EXPECT_EQ(IconOf(apps, icons, "Alder.Wood", "Meadow"), "C:\\Icons\\Meadow.png");
}

TEST(IconFinder, CopiesToTheRootOfTheDriveWithoutADirectory) {
  RecordingIconMaker icons;
  EXPECT_EQ(IconOf({{"Alder", {}}}, icons, "Alder", "Meadow", ""), "\\Meadow.png");
  EXPECT_THAT(icons.copies, ElementsAre("|\\Meadow.png"));
}

TEST(IconFinder, DoesNotCopyOutOfTheDirectory) {
  RecordingIconMaker icons;
  const PackagedApps apps{{"Alder", {}}};
  for (const std::string& name : {"..\\Meadow"s, "a/b"s, "Meadow:s"s, "C:"s, "Mea\0dow"s}) {
    EXPECT_EQ(IconOf(apps, icons, "Alder", name), "") << name;
  }
  EXPECT_EQ(IconOf(apps, icons, "Alder", "Meadow", "C:\\Ic\0ons"s), "");
  EXPECT_THAT(icons.copies, IsEmpty());
}

TEST(IconFinder, ReturnsTheMakersPathForAnExecutable) {
  RecordingIconMaker icons;
  icons.exported = "C:\\Icons\\..\\x.png";
  EXPECT_EQ(IconOf({}, icons, kExecutable, "..\\x"), "C:\\Icons\\..\\x.png");
}

}  // namespace
