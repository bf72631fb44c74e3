#include "support/temp_folder.h"

#include <windows.h>

#include <string>

#include <gtest/gtest.h>

namespace {

using TestSupport::FileExists;
using TestSupport::ReadWholeFile;
using TestSupport::TempFolder;
using TestSupport::WriteWholeFile;

/// The path that the next TempFolder of this process will try first.
std::wstring NextPath() {
  const TempFolder folder;
  const auto number = folder.Path().find_last_of(L'-') + 1;
  return folder.Path().substr(0, number) +
         std::to_wstring(std::stoi(folder.Path().substr(number)) + 1);
}

TEST(TempFolder, IsNewAndEmptyWhenACrashedRunLeftAFolderOfItsName) {
  const std::wstring left = NextPath();
  ASSERT_TRUE(CreateDirectoryW(left.c_str(), nullptr));
  WriteWholeFile(left + L"\\file", "left by a crashed run");
  {
    const TempFolder folder;
    EXPECT_NE(folder.Path(), left);
    EXPECT_TRUE(FileExists(folder.Path()));
    EXPECT_FALSE(FileExists(folder.File(L"file")));
  }
  DeleteFileW((left + L"\\file").c_str());
  RemoveDirectoryW(left.c_str());
}

TEST(TempFolder, IsRemovedWithItsContents) {
  std::wstring path;
  {
    const TempFolder folder;
    path = folder.Path();
    ASSERT_TRUE(CreateDirectoryW(folder.File(L"below").c_str(), nullptr));
    WriteWholeFile(folder.File(L"below\\file"), "text");
  }
  EXPECT_FALSE(FileExists(path));
}

TEST(TempFolder, ReadsBackTheBytesThatWereWrittenToAFile) {
  const TempFolder folder;
  const std::string bytes("a\r\n\0\x1A\xFF", 6);
  WriteWholeFile(folder.File(L"file"), bytes);
  EXPECT_EQ(ReadWholeFile(folder.File(L"file")), bytes);
  WriteWholeFile(folder.File(L"file"), "cut");
  EXPECT_EQ(ReadWholeFile(folder.File(L"file")), "cut");
}

}  // namespace
