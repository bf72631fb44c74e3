#include <windows.h>

#include <cstring>

#include <gtest/gtest.h>

#include "collection/open_helper.h"
#include "import_patch.h"

using TestSupport::OpenHelper;

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

TEST(GetDevicePath, ReturnsTheDeviceOfADrive) {
  EXPECT_EQ(OpenHelper().GetDevicePath("C:").substr(0, 8), "\\Device\\");
}

TEST(GetDevicePath, ReturnsTheFirstOfSeveralTexts) {
  const Standin::ImportPatch patch("QueryDosDeviceA", &ReturnTwoTexts);
  EXPECT_EQ(OpenHelper().GetDevicePath("C:"), "\\Device\\First");
}

TEST(GetDevicePath, IsEmptyForAMissingDrive) {
  EXPECT_EQ(OpenHelper().GetDevicePath("no drive:"), "");
  const Standin::ImportPatch patch("QueryDosDeviceA", &FailWithGarbage);
  EXPECT_EQ(OpenHelper().GetDevicePath("C:"), "");
}

TEST(GetDevicePath, TruncatesAnUnterminatedAnswerToItsBuffer) {
  const Standin::ImportPatch patch("QueryDosDeviceA", &FillWithoutATerminator);
  EXPECT_EQ(OpenHelper().GetDevicePath("C:"), std::string(1023, 'x'));
}
