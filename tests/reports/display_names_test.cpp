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
      paths.push_back(path);
      return answer;
    };
  }

  PackagedApps packages;
  /// The files whose descriptions were read.
  std::vector<std::string> paths;
};

}  // namespace

TEST_F(DisplayNamesTest, ExecutableHasTheDescriptionOfItsFileOnTheSystemDrive) {
  DisplayNames names(kPrefix, packages, Describe("Meadow Office"));
  EXPECT_EQ(names.Resolve("\\Device\\HarddiskVolume3\\Program Files\\Meadow\\meadow.exe"),
            "Meadow Office");
  EXPECT_EQ(paths, std::vector<std::string>{"C:\\Program Files\\Meadow\\meadow.exe"});
}

TEST_F(DisplayNamesTest, DescriptionOfAnExecutableIsReadOnce) {
  DisplayNames names(kPrefix, packages, Describe("Meadow Office"));
  static_cast<void>(names.Resolve("\\Device\\HarddiskVolume3\\a.exe"));
  EXPECT_EQ(names.Resolve("\\Device\\HarddiskVolume3\\a.exe"), "Meadow Office");
  EXPECT_EQ(paths.size(), 1U);
  static_cast<void>(names.Resolve("\\Device\\HarddiskVolume3\\b.exe"));
  EXPECT_EQ(paths.size(), 2U);
}

TEST_F(DisplayNamesTest, EmptyDescriptionOfAnExecutableIsReadOnce) {
  DisplayNames names(kPrefix, packages, Describe(""));
  EXPECT_EQ(names.Resolve("\\Device\\HarddiskVolume3\\a.exe"), "");
  EXPECT_EQ(names.Resolve("\\Device\\HarddiskVolume3\\a.exe"), "");
  EXPECT_EQ(paths.size(), 1U);
}

TEST_F(DisplayNamesTest, DescriptionsAreNotKeptAfterTheRun) {
  static_cast<void>(
      DisplayNames(kPrefix, packages, Describe("old")).Resolve("\\Device\\HarddiskVolume3\\a.exe"));
  DisplayNames next(kPrefix, packages, Describe("new"));
  EXPECT_EQ(next.Resolve("\\Device\\HarddiskVolume3\\a.exe"), "new");
}

TEST_F(DisplayNamesTest, ExecutableOnAnotherDriveHasNoName) {
  DisplayNames names(kPrefix, packages, Describe("Meadow Office"));
  EXPECT_EQ(names.Resolve("\\Device\\HarddiskVolume7\\Meadow\\meadow.exe"), "");
  EXPECT_TRUE(paths.empty());
}

TEST_F(DisplayNamesTest, ExecutableHasNoNameWithoutADevicePrefix) {
  DisplayNames names("", packages, Describe("Meadow Office"));
  EXPECT_EQ(names.Resolve("\\Device\\HarddiskVolume3\\a.exe"), "");
  EXPECT_TRUE(paths.empty());
}

TEST_F(DisplayNamesTest, LengthOfThePrefixIsCutFromTheStartOfThePath) {
  DisplayNames names("\\Device\\H3", packages, Describe(""));
  EXPECT_EQ(names.Resolve("\\Device\\Mup\\x\\Device\\H3\\a.exe"), "");
  EXPECT_EQ(paths, std::vector<std::string>{"C:p\\x\\Device\\H3\\a.exe"});
}

TEST_F(DisplayNamesTest, ExecutableNeverHasTheNameOfAPackage) {
  packages["\\Device\\"] = {"Package", ""};
  packages[""] = {"Every package", ""};
  DisplayNames names(kPrefix, packages, Describe(""));
  EXPECT_EQ(names.Resolve("\\Device\\HarddiskVolume3\\a.exe"), "");
  EXPECT_EQ(names.Resolve("\\Device\\HarddiskVolume7\\a.exe"), "");
}

TEST_F(DisplayNamesTest, PathOfAnExecutableIsPassedUndecoded) {
  DisplayNames names(kPrefix, packages, Describe(""));
  static_cast<void>(
      names.Resolve("\\Device\\HarddiskVolume3\\Stra\xC3\x9F"
                    "e\\\xE9\x9B\xBB.exe"));
  EXPECT_EQ(paths, std::vector<std::string>{"C:\\Stra\xC3\x9F"
                                            "e\\\xE9\x9B\xBB.exe"});
}

TEST_F(DisplayNamesTest, PackageIsFoundByTheBeginningOfTheIdentity) {
  packages["Orchard.Notes"] = {"Orchard Notes", ""};
  packages["Willow.Weather"] = {"Willow Weather", ""};
  DisplayNames names(kPrefix, packages, Describe("file"));
  EXPECT_EQ(names.Resolve("Willow.Weather_1.0.0.0_x64__f7c2n9xb4r5hp"), "Willow Weather");
  EXPECT_EQ(names.Resolve("Orchard.Notes"), "Orchard Notes");
  EXPECT_EQ(names.Resolve("Finch.Music_1.0"), "");
  EXPECT_EQ(names.Resolve("orchard.notes"), "");
  EXPECT_EQ(names.Resolve("Orchard.Note"), "");
  EXPECT_EQ(names.Resolve("x Orchard.Notes"), "");
  EXPECT_TRUE(paths.empty());
}

TEST(DisplayNames, UsesTheLastMatchingPackageInKeyOrder) {
  const PackagedApps packages{{"Orchard", {"Orchard", ""}},
                              {"Orchard.Notes", {"Orchard Notes", ""}},
                              {"Orchard.NotesPro", {"Orchard Notes Pro", ""}},
                              {"Orchard.Z", {"Z", ""}}};
  DisplayNames names(kPrefix, packages, [](const std::string&) { return "file"; });
  EXPECT_EQ(names.Resolve("Orchard.NotesPro_1"), "Orchard Notes Pro");
  EXPECT_EQ(names.Resolve("Orchard.Notes_1"), "Orchard Notes");
  EXPECT_EQ(names.Resolve("Orchard_1"), "Orchard");
}

TEST_F(DisplayNamesTest, LastMatchingPackageIsUsedEvenWithAnEmptyName) {
  packages["Orchard"] = {"Orchard", ""};
  packages["Orchard.Notes"] = {"", ""};
  DisplayNames names(kPrefix, packages, Describe("file"));
  EXPECT_EQ(names.Resolve("Orchard.Notes_1"), "");
}

TEST_F(DisplayNamesTest, PackageNamesAreCachedOnlyForAMatch) {
  packages["Orchard.Notes"] = {"Orchard Notes", ""};
  DisplayNames names(kPrefix, packages, Describe("file"));
  EXPECT_EQ(names.Resolve("Orchard.Notes_1"), "Orchard Notes");
  EXPECT_EQ(names.Resolve("Finch.Music_1"), "");
  packages = {{"Orchard.Notes", {"changed", ""}}, {"Finch.Music", {"Finch Music", ""}}};
  EXPECT_EQ(names.Resolve("Orchard.Notes_1"), "Orchard Notes");
  EXPECT_EQ(names.Resolve("Finch.Music_1"), "Finch Music");
}

TEST_F(DisplayNamesTest, EmptyIdentityHasNoName) {
  packages["Orchard.Notes"] = {"Orchard Notes", ""};
  DisplayNames names(kPrefix, packages, Describe("file"));
  EXPECT_EQ(names.Resolve(""), "");
  EXPECT_TRUE(paths.empty());
}

TEST_F(DisplayNamesTest, IdentityIsAPathOnlyWithTheWholeDeviceFolder) {
  DisplayNames names(kPrefix, packages, Describe("file"));
  for (const char* appId : {"\\Device", "\\device\\HarddiskVolume3\\a.exe", "Device\\a", "C:\\a"}) {
    EXPECT_EQ(names.Resolve(appId), "") << appId;
  }
  EXPECT_TRUE(paths.empty());
}

TEST_F(DisplayNamesTest, DescriptionsAreCachedUpToTheLimit) {
  // An entry takes about 150 bytes without its texts.
  DisplayNames names(kPrefix, packages, Describe("Meadow Office"), 1000);
  const std::string first = "\\Device\\HarddiskVolume3\\a.exe";
  const std::string large = "\\Device\\HarddiskVolume3\\" + std::string(900, 'b');
  for (const std::string& appId : {first, large, first, large}) {
    EXPECT_EQ(names.Resolve(appId), "Meadow Office");
  }
  EXPECT_EQ(paths.size(), 3U) << "the large one is not read twice";
  for (int i = 0; i < 20; ++i)
    static_cast<void>(names.Resolve("\\Device\\HarddiskVolume3\\" + std::to_string(i)));
  paths.clear();
  for (int i = 0; i < 20; ++i)
    static_cast<void>(names.Resolve("\\Device\\HarddiskVolume3\\" + std::to_string(i)));
  EXPECT_GE(paths.size(), 14U);
  EXPECT_LT(paths.size(), 20U);
}

TEST_F(DisplayNamesTest, AnEntryCountsAsTwoStringsANodeAndThreeBlocksOfTheHeap) {
  // A node has four pointers, and the heap takes 16 bytes for each block.
  const std::string path = std::string(kPrefix) + "\\a";
  const std::size_t bytes = path.size() + 5 + sizeof(std::string) + sizeof(std::string) +
                            4 * sizeof(void*) + 16 + 16 + 16;
  for (const std::size_t limit : {bytes, bytes - 1}) {
    paths.clear();
    DisplayNames names(kPrefix, packages, Describe("Finch"), limit);
    static_cast<void>(names.Resolve(path));
    static_cast<void>(names.Resolve(path));
    EXPECT_EQ(paths.size(), limit == bytes ? 1U : 2U) << limit;
  }
}
