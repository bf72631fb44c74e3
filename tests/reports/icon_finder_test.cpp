#include "reports/icon_finder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "reports/fake_ranking.h"

namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::NotedIcons;
using Zq::Gantry::Server::Services::Wattleaf::IconFinder;
using Zq::Gantry::Server::Services::Wattleaf::IconProduction;
using Zq::Gantry::Server::Services::Wattleaf::PackagedApps;

constexpr char kExecutable[] = "\\Device\\HarddiskVolume3\\Tools\\a.exe";

/// What one finder gives for one application.
std::string IconOf(const PackagedApps& apps, const IconProduction& production,
                   const std::string& appId, const std::string& displayName) {
  return IconFinder(apps, production).Find(appId, displayName);
}

bool IsMatch(const std::string& packageName, const std::string& appId) {
  NotedIcons icons;
  return !IconOf({{packageName, {}}}, icons.Production(), appId, "Meadow").empty();
}

TEST(IconFinder, ExportsTheIconOfAnExecutable) {
  NotedIcons icons{.exported = "C:\\Icons\\Meadow.png"};
  const PackagedApps everything{{"", {"All", "all.png"}}};
  EXPECT_EQ(IconOf(everything, icons.Production(), kExecutable, "Meadow"), "C:\\Icons\\Meadow.png");
  EXPECT_THAT(icons.exports, ElementsAre("\\Device\\HarddiskVolume3\\Tools\\a.exe|C:\\Icons|Meadow|"
                                         "\\Device\\HarddiskVolume3"));
  EXPECT_THAT(icons.copies, IsEmpty());
}

TEST(IconFinder, CopiesTheLogoOfAPackage) {
  NotedIcons icons;
  const PackagedApps apps{{"Alder.Meadow", {"Meadow", "C:\\Apps\\logo.png"}}};
  EXPECT_EQ(IconOf(apps, icons.Production(), "Alder.Meadow_1.0_x64", "Shown Name"),
            "C:\\Icons\\Shown Name.png");
  EXPECT_THAT(icons.copies, ElementsAre("C:\\Apps\\logo.png|C:\\Icons\\Shown Name.png"));
  EXPECT_THAT(icons.exports, IsEmpty());
}

TEST(IconFinder, HasNoneWithoutAMatchingPackage) {
  NotedIcons icons;
  EXPECT_EQ(IconOf({{"Birch", {}}}, icons.Production(), "Alder.Meadow", "Meadow"), "");
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

TEST(IconFinder, TakesOnlyTheWholeDeviceFolderForAnExecutable) {
  NotedIcons icons{.exported = "x"};
  EXPECT_EQ(IconOf({}, icons.Production(), "\\Device", "Meadow"), "");
  EXPECT_EQ(IconOf({}, icons.Production(), "\\device\\a.exe", "Meadow"), "");
  EXPECT_EQ(IconOf({}, icons.Production(), "\\Device\\", "Meadow"), "x");
}

TEST(IconFinder, MakesAnIconOncePerDisplayName) {
  NotedIcons icons;
  const PackagedApps apps{{"Alder", {}}, {"Birch", {}}};
  const IconProduction production = icons.Production();
  IconFinder finder(apps, production);
  for (const char* appId : {"Alder", "Birch", kExecutable}) {
    EXPECT_EQ(finder.Find(appId, "Meadow"), "C:\\Icons\\Meadow.png");
  }
  EXPECT_THAT(icons.copies, ElementsAre("|C:\\Icons\\Meadow.png"));
  EXPECT_THAT(icons.exports, IsEmpty());
  finder.Find("Birch", "Other");
  EXPECT_EQ(icons.copies.size(), 2U);
}

TEST(IconFinder, TriesAgainAfterAnEmptyOutcome) {
  NotedIcons icons{.isCopied = false};
  const PackagedApps apps{{"Alder", {}}};
  const IconProduction production = icons.Production();
  IconFinder finder(apps, production);
  EXPECT_EQ(finder.Find("Alder", "Meadow"), "");
  EXPECT_EQ(finder.Find("Alder", "Meadow"), "");
  icons.isCopied = true;
  EXPECT_EQ(finder.Find("Alder", "Meadow"), "C:\\Icons\\Meadow.png");
  EXPECT_EQ(icons.copies.size(), 3U);
}

TEST(IconFinder, LetsTheLastMatchingPackageWin) {
  std::vector<std::string> copied;
  IconProduction production{"C:\\Icons", "", {}, [&](const std::string& from, const std::string&) {
                              copied.push_back(from);
                              return from == "short";
                            }};
  const PackagedApps apps{{"Alder", {"", "short"}}, {"Alder.Meadow", {"", "long"}}};
  EXPECT_EQ(IconOf(apps, production, "Alder.Meadow.Tool", "Meadow"), "");
  EXPECT_THAT(copied, ElementsAre("short", "long"));
  EXPECT_EQ(IconOf(apps, production, "Alder.Wood", "Meadow"), "C:\\Icons\\Meadow.png");
}

TEST(IconFinder, PutsIconsIntoTheRootOfTheDriveWithoutADirectory) {
  NotedIcons icons;
  EXPECT_EQ(IconOf({{"Alder", {}}}, icons.Production(""), "Alder", "Meadow"), "\\Meadow.png");
  EXPECT_THAT(icons.copies, ElementsAre("|\\Meadow.png"));
}

TEST(IconFinder, NeverCopiesToANameThatLeadsElsewhere) {
  NotedIcons icons;
  const PackagedApps apps{{"Alder", {}}};
  for (const std::string& name : {"..\\Meadow"s, "a/b"s, "Meadow:s"s, "C:"s, "Mea\0dow"s}) {
    EXPECT_EQ(IconOf(apps, icons.Production(), "Alder", name), "") << name;
  }
  EXPECT_EQ(IconOf(apps, icons.Production("C:\\Ic\0ons"s), "Alder", "Meadow"), "");
  EXPECT_THAT(icons.copies, IsEmpty());
}

TEST(IconFinder, LeavesTheTextOfAnExecutablesIconToItsMaker) {
  NotedIcons icons{.exported = "C:\\Icons\\..\\x.png"};
  EXPECT_EQ(IconOf({}, icons.Production(), kExecutable, "..\\x"), "C:\\Icons\\..\\x.png");
}

}  // namespace
