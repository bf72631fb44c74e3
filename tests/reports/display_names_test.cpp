#include "reports/display_names.h"

#include <gtest/gtest.h>

#include <vector>

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

constexpr char kPrefix[] = "\\Device\\HarddiskVolume3";

class DisplayNamesTest : public testing::Test {
 protected:
  DisplayNames::DescribeFile Describe(std::string answer) {
    return [this, answer](const std::string& path) {
      asked.push_back(path);
      return answer;
    };
  }

  PackagedApps packages;
  std::vector<std::string> asked;
};

}  // namespace

using DisplayNamesOfExecutables = DisplayNamesTest;
using DisplayNamesOfPackages = DisplayNamesTest;

TEST_F(DisplayNamesOfExecutables, AreTheDescriptionsOfTheFilesOnTheSystemDrive) {
  DisplayNames names(kPrefix, packages, Describe("Meadow Office"));
  EXPECT_EQ(names.Resolve("\\Device\\HarddiskVolume3\\Program Files\\Meadow\\meadow.exe"),
            "Meadow Office");
  EXPECT_EQ(asked, std::vector<std::string>{"C:\\Program Files\\Meadow\\meadow.exe"});
}

TEST_F(DisplayNamesOfExecutables, AreAskedForOnce) {
  DisplayNames names(kPrefix, packages, Describe("Meadow Office"));
  static_cast<void>(names.Resolve("\\Device\\HarddiskVolume3\\a.exe"));
  EXPECT_EQ(names.Resolve("\\Device\\HarddiskVolume3\\a.exe"), "Meadow Office");
  EXPECT_EQ(asked.size(), 1U);
  static_cast<void>(names.Resolve("\\Device\\HarddiskVolume3\\b.exe"));
  EXPECT_EQ(asked.size(), 2U);
}

TEST_F(DisplayNamesOfExecutables, AreAskedForOnceAlsoWhereTheyAreEmpty) {
  DisplayNames names(kPrefix, packages, Describe(""));
  EXPECT_EQ(names.Resolve("\\Device\\HarddiskVolume3\\a.exe"), "");
  EXPECT_EQ(names.Resolve("\\Device\\HarddiskVolume3\\a.exe"), "");
  EXPECT_EQ(asked.size(), 1U);
}

TEST_F(DisplayNamesOfExecutables, AreForgottenWithTheRun) {
  static_cast<void>(
      DisplayNames(kPrefix, packages, Describe("old")).Resolve("\\Device\\HarddiskVolume3\\a.exe"));
  DisplayNames next(kPrefix, packages, Describe("new"));
  EXPECT_EQ(next.Resolve("\\Device\\HarddiskVolume3\\a.exe"), "new");
}

TEST_F(DisplayNamesOfExecutables, AreEmptyOnOtherDrives) {
  DisplayNames names(kPrefix, packages, Describe("Meadow Office"));
  EXPECT_EQ(names.Resolve("\\Device\\HarddiskVolume7\\Meadow\\meadow.exe"), "");
  EXPECT_TRUE(asked.empty());
}

TEST_F(DisplayNamesOfExecutables, AreEmptyWithoutADevicePath) {
  DisplayNames names("", packages, Describe("Meadow Office"));
  EXPECT_EQ(names.Resolve("\\Device\\HarddiskVolume3\\a.exe"), "");
  EXPECT_TRUE(asked.empty());
}

TEST_F(DisplayNamesOfExecutables, LoseTheLeadingBytesWhereverThePrefixStands) {
  DisplayNames names("\\Device\\H3", packages, Describe(""));
  EXPECT_EQ(names.Resolve("\\Device\\Mup\\x\\Device\\H3\\a.exe"), "");
  EXPECT_EQ(asked, std::vector<std::string>{"C:p\\x\\Device\\H3\\a.exe"});
}

TEST_F(DisplayNamesOfExecutables, AreNeverThoseOfAPackage) {
  packages["\\Device\\"] = {"Package", ""};
  packages[""] = {"Every package", ""};
  DisplayNames names(kPrefix, packages, Describe(""));
  EXPECT_EQ(names.Resolve("\\Device\\HarddiskVolume3\\a.exe"), "");
  EXPECT_EQ(names.Resolve("\\Device\\HarddiskVolume7\\a.exe"), "");
}

TEST_F(DisplayNamesOfExecutables, GetTheBytesOfThePathAsTheyStand) {
  DisplayNames names(kPrefix, packages, Describe(""));
  static_cast<void>(
      names.Resolve("\\Device\\HarddiskVolume3\\Stra\xC3\x9F"
                    "e\\\xE9\x9B\xBB.exe"));
  EXPECT_EQ(asked, std::vector<std::string>{"C:\\Stra\xC3\x9F"
                                            "e\\\xE9\x9B\xBB.exe"});
}

TEST_F(DisplayNamesOfPackages, AreThoseOfThePackageWhoseKeyBeginsTheIdentity) {
  packages["Orchard.Notes"] = {"Orchard Notes", ""};
  packages["Willow.Weather"] = {"Willow Weather", ""};
  DisplayNames names(kPrefix, packages, Describe("file"));
  EXPECT_EQ(names.Resolve("Willow.Weather_1.0.0.0_x64__f7c2n9xb4r5hp"), "Willow Weather");
  EXPECT_EQ(names.Resolve("Orchard.Notes"), "Orchard Notes");
  EXPECT_EQ(names.Resolve("Finch.Music_1.0"), "");
  EXPECT_EQ(names.Resolve("orchard.notes"), "");
  EXPECT_EQ(names.Resolve("Orchard.Note"), "");
  EXPECT_EQ(names.Resolve("x Orchard.Notes"), "");
  EXPECT_TRUE(asked.empty());
}

TEST(DisplayNames, TakesTheLastMatchingPackageInKeyOrder) {
  const PackagedApps packages{{"Orchard", {"Orchard", ""}},
                              {"Orchard.Notes", {"Orchard Notes", ""}},
                              {"Orchard.NotesPro", {"Orchard Notes Pro", ""}},
                              {"Orchard.Z", {"Z", ""}}};
  DisplayNames names(kPrefix, packages, [](const std::string&) { return "file"; });
  EXPECT_EQ(names.Resolve("Orchard.NotesPro_1"), "Orchard Notes Pro");
  EXPECT_EQ(names.Resolve("Orchard.Notes_1"), "Orchard Notes");
  EXPECT_EQ(names.Resolve("Orchard_1"), "Orchard");
}

TEST_F(DisplayNamesOfPackages, TakeTheLastMatchAlsoWhereItsNameIsEmpty) {
  packages["Orchard"] = {"Orchard", ""};
  packages["Orchard.Notes"] = {"", ""};
  DisplayNames names(kPrefix, packages, Describe("file"));
  EXPECT_EQ(names.Resolve("Orchard.Notes_1"), "");
}

TEST_F(DisplayNamesOfPackages, AreRememberedOnlyWhereThereIsAMatch) {
  packages["Orchard.Notes"] = {"Orchard Notes", ""};
  DisplayNames names(kPrefix, packages, Describe("file"));
  EXPECT_EQ(names.Resolve("Orchard.Notes_1"), "Orchard Notes");
  EXPECT_EQ(names.Resolve("Finch.Music_1"), "");
  packages = {{"Orchard.Notes", {"changed", ""}}, {"Finch.Music", {"Finch Music", ""}}};
  EXPECT_EQ(names.Resolve("Orchard.Notes_1"), "Orchard Notes");
  EXPECT_EQ(names.Resolve("Finch.Music_1"), "Finch Music");
}

TEST_F(DisplayNamesOfPackages, AreEmptyForAnEmptyIdentity) {
  packages["Orchard.Notes"] = {"Orchard Notes", ""};
  DisplayNames names(kPrefix, packages, Describe("file"));
  EXPECT_EQ(names.Resolve(""), "");
  EXPECT_TRUE(asked.empty());
}

TEST_F(DisplayNamesOfPackages, NeedTheWholeDevicePrefixToBeAPath) {
  DisplayNames names(kPrefix, packages, Describe("file"));
  for (const char* appId : {"\\Device", "\\device\\HarddiskVolume3\\a.exe", "Device\\a", "C:\\a"}) {
    EXPECT_EQ(names.Resolve(appId), "") << appId;
  }
  EXPECT_TRUE(asked.empty());
}

TEST_F(DisplayNamesOfExecutables, AreRememberedAsLongAsThereIsRoomForThem) {
  // An entry takes some 150 bytes without its texts.
  DisplayNames names(kPrefix, packages, Describe("Meadow Office"), 1000);
  const std::string first = "\\Device\\HarddiskVolume3\\a.exe";
  const std::string large = "\\Device\\HarddiskVolume3\\" + std::string(900, 'b');
  for (const std::string& appId : {first, large, first, large}) {
    EXPECT_EQ(names.Resolve(appId), "Meadow Office");
  }
  EXPECT_EQ(asked.size(), 3U) << "the large one is asked for twice";
  for (int i = 0; i < 20; ++i)
    static_cast<void>(names.Resolve("\\Device\\HarddiskVolume3\\" + std::to_string(i)));
  asked.clear();
  for (int i = 0; i < 20; ++i)
    static_cast<void>(names.Resolve("\\Device\\HarddiskVolume3\\" + std::to_string(i)));
  EXPECT_GE(asked.size(), 14U);
  EXPECT_LT(asked.size(), 20U);
}
