#include "base/plain_file.h"

#include <windows.h>

#include <gtest/gtest.h>

#include "base/fake_attributes.h"
#include "import_patch.h"
#include "support/temp_folder.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::TempFolder;

namespace {

bool IsFolder(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

int g_creations = 0;

BOOL WINAPI CountAndFail(const wchar_t*, SECURITY_ATTRIBUTES* security) {
  ++g_creations;
  EXPECT_EQ(security, nullptr);
  return FALSE;
}

}  // namespace

TEST(CreateDirectoryTree, CreatesEveryFolderOfAPath) {
  const TempFolder folder;
  EXPECT_TRUE(CreateDirectoryTree(folder.File(L"a\\b/c")));
  EXPECT_TRUE(IsFolder(folder.File(L"a\\b\\c")));
}

TEST(CreateDirectoryTree, SucceedsForAnExistingFolder) {
  const TempFolder folder;
  EXPECT_TRUE(CreateDirectoryTree(folder.Path()));
  EXPECT_TRUE(CreateDirectoryTree(folder.Path() + L"\\"));
}

TEST(CreateDirectoryTree, SucceedsForAReparsePoint) {
  const TempFolder folder;
  TestSupport::WriteWholeFile(folder.File(L"link"), "x");
  const TestSupport::FakeReparsePoint fake(folder.File(L"link"), IO_REPARSE_TAG_SYMLINK);
  EXPECT_TRUE(CreateDirectoryTree(folder.File(L"link")));
}

TEST(CreateDirectoryTree, FailsForAnExistingPlainFile) {
  const TempFolder folder;
  TestSupport::WriteWholeFile(folder.File(L"file"), "x");
  EXPECT_FALSE(CreateDirectoryTree(folder.File(L"file")));
  EXPECT_FALSE(CreateDirectoryTree(folder.File(L"file\\below\\it")));
  EXPECT_EQ(TestSupport::ReadWholeFile(folder.File(L"file")), "x");
}

TEST(CreateDirectoryTree, ReturnsFalseForANewPathWithATrailingSeparator) {
  const TempFolder folder;
  EXPECT_FALSE(CreateDirectoryTree(folder.File(L"a\\b\\")));
  EXPECT_TRUE(IsFolder(folder.File(L"a\\b")));
  EXPECT_TRUE(CreateDirectoryTree(folder.File(L"a\\b\\")));
}

TEST(CreateDirectoryTree, FailsForWildcards) {
  const TempFolder folder;
  EXPECT_FALSE(CreateDirectoryTree(folder.File(L"*")));
  EXPECT_FALSE(CreateDirectoryTree(folder.File(L"a?\\b")));
  EXPECT_FALSE(IsFolder(folder.File(L"a?")));
}

TEST(CreateDirectoryTree, FailsForAnEmptyOrImpossiblePath) {
  EXPECT_FALSE(CreateDirectoryTree(L""));
  EXPECT_FALSE(CreateDirectoryTree(L"\\\\?\\nowhere:\\a"));
}

TEST(CreateDirectoryTree, SurvivesFifteenThousandSeparators) {
  std::wstring path = L"Q:";
  for (int i = 0; i < 15000; ++i) path += L"\\a";
  EXPECT_FALSE(CreateDirectoryTree(path));
  const TempFolder folder;
  EXPECT_FALSE(CreateDirectoryTree(folder.File(L"x") + std::wstring(2000, L'\\') + L"y"));
}

TEST(CreateDirectoryTree, CreatesNothingForATooLongPath) {
  const TempFolder folder;
  std::wstring path = folder.File(L"a");
  while (path.size() < 1000000) path += L"\\b";
  EXPECT_FALSE(CreateDirectoryTree(path));
  EXPECT_FALSE(IsFolder(folder.File(L"a")));
}

TEST(CreateDirectoryTree, StopsAtTheFirstFolderThatCannotBeCreated) {
  const TempFolder folder;
  g_creations = 0;
  const Standin::ImportPatch patch("CreateDirectoryW", &CountAndFail);
  EXPECT_FALSE(CreateDirectoryTree(folder.File(L"a\\b\\c\\d")));
  EXPECT_EQ(g_creations, 1);
}
