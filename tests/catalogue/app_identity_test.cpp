#include "catalogue/app_identity.h"

#include <gtest/gtest.h>

namespace {

using Zq::Gantry::Server::Services::Wattleaf::IsDevicePath;
using Zq::Gantry::Server::Services::Wattleaf::TryDrivePath;

constexpr char kPrefix[] = "\\Device\\HarddiskVolume3";

TEST(TryDrivePath, ReplacesThePrefixByTheDrive) {
  EXPECT_EQ(TryDrivePath("\\Device\\HarddiskVolume3\\Tools\\a.exe", kPrefix), "C:\\Tools\\a.exe");
}

TEST(TryDrivePath, ReturnsNothingForAnotherDrive) {
  EXPECT_EQ(TryDrivePath("\\Device\\HarddiskVolume5\\a.exe", kPrefix), std::nullopt);
}

TEST(TryDrivePath, ReplacesTheFirstBytesWhereverThePrefixOccurs) {
  // The prefix has 23 bytes; "\\Device\\Mup\\x\\Device\\Ha" are the first 23 of the path.
  EXPECT_EQ(TryDrivePath("\\Device\\Mup\\x\\Device\\HarddiskVolume3\\a.exe", kPrefix),
            "C:rddiskVolume3\\a.exe");
}

TEST(IsDevicePath, AcceptsOnlyPathsThatBeginWithTheDeviceFolder) {
  EXPECT_TRUE(IsDevicePath("\\Device\\"));
  EXPECT_FALSE(IsDevicePath("\\Device"));
  EXPECT_FALSE(IsDevicePath("\\device\\x"));
  EXPECT_FALSE(IsDevicePath(""));
}

}  // namespace
