#include "base/device_path.h"

#include <windows.h>

#include <cstring>

#include <gtest/gtest.h>

#include "import_patch.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

DWORD WINAPI ReturnTwoTexts(const char* drive, char* buffer, DWORD capacity) {
  EXPECT_STREQ(drive, "C:");
  EXPECT_EQ(capacity, 1024U);
  const char texts[] = "\\Device\\First\0\\Device\\Second\0";
  std::memcpy(buffer, texts, sizeof(texts));
  return sizeof(texts);
}

DWORD WINAPI FailWithGarbage(const char*, char* buffer, DWORD) {
  std::memcpy(buffer, "garbage", 7);
  return 0;
}

DWORD WINAPI FillWithoutATerminator(const char*, char* buffer, DWORD capacity) {
  std::memset(buffer, 'x', capacity);
  return capacity;
}

}  // namespace

TEST(QueryDevicePath, ReturnsTheDeviceOfADrive) {
  EXPECT_EQ(QueryDevicePath("C:").substr(0, 8), "\\Device\\");
}

TEST(QueryDevicePath, ReturnsTheFirstOfSeveralTexts) {
  const Standin::ImportPatch patch("QueryDosDeviceA", &ReturnTwoTexts);
  EXPECT_EQ(QueryDevicePath("C:"), "\\Device\\First");
}

TEST(QueryDevicePath, IsEmptyForAMissingDrive) {
  EXPECT_EQ(QueryDevicePath("no drive:"), "");
  const Standin::ImportPatch patch("QueryDosDeviceA", &FailWithGarbage);
  EXPECT_EQ(QueryDevicePath("C:"), "");
}

TEST(QueryDevicePath, TruncatesAnUnterminatedAnswerToItsBuffer) {
  const Standin::ImportPatch patch("QueryDosDeviceA", &FillWithoutATerminator);
  EXPECT_EQ(QueryDevicePath("C:"), std::string(1023, 'x'));
}
