#include "base/device_path.h"

#include <windows.h>

#include <cstring>

#include <gtest/gtest.h>

#include "import_patch.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

DWORD WINAPI GiveTwoTexts(const char* drive, char* buffer, DWORD capacity) {
  EXPECT_STREQ(drive, "C:");
  EXPECT_EQ(capacity, 1024U);
  const char texts[] = "\\Device\\First\0\\Device\\Second\0";
  std::memcpy(buffer, texts, sizeof(texts));
  return sizeof(texts);
}

DWORD WINAPI FailWithRubbish(const char*, char* buffer, DWORD) {
  std::memcpy(buffer, "rubbish", 7);
  return 0;
}

DWORD WINAPI FillToTheBrim(const char*, char* buffer, DWORD capacity) {
  std::memset(buffer, 'x', capacity);
  return capacity;
}

}  // namespace

TEST(QueryDevicePath, GivesTheDeviceOfADrive) {
  EXPECT_EQ(QueryDevicePath("C:").substr(0, 8), "\\Device\\");
}

TEST(QueryDevicePath, GivesTheFirstOfSeveralTexts) {
  const Standin::ImportPatch patch("QueryDosDeviceA", &GiveTwoTexts);
  EXPECT_EQ(QueryDevicePath("C:"), "\\Device\\First");
}

TEST(QueryDevicePath, IsEmptyForADriveThatIsNotThere) {
  EXPECT_EQ(QueryDevicePath("no drive:"), "");
  const Standin::ImportPatch patch("QueryDosDeviceA", &FailWithRubbish);
  EXPECT_EQ(QueryDevicePath("C:"), "");
}

TEST(QueryDevicePath, EndsWithItsBuffer) {
  const Standin::ImportPatch patch("QueryDosDeviceA", &FillToTheBrim);
  EXPECT_EQ(QueryDevicePath("C:"), std::string(1023, 'x'));
}
