#include "security/trust/path_rules.h"

#include <gtest/gtest.h>

namespace Zq::Gantry::Security {
namespace {

TEST(AllowedRootPaths, HoldsTheThreeRootsInOrder) {
  ASSERT_EQ(AllowedRootPaths.size(), 3U);
  EXPECT_EQ(AllowedRootPaths[0], std::wstring(L"%windir%\\"));
  EXPECT_EQ(AllowedRootPaths[1], std::wstring(L"%PROGRAMFILES(x86)%\\"));
  EXPECT_EQ(AllowedRootPaths[2], std::wstring(L"%PROGRAMFILES%\\"));
}

TEST(PackagedMarker, HasFourteenCharacters) {
  EXPECT_EQ(kPackagedMarker, std::wstring(L":\\WindowsApps\\"));
  EXPECT_EQ(kPackagedMarker.size(), 14U);
}

TEST(HasPrefix, IgnoresCase) {
  struct Row {
    const char* label;
    const wchar_t* text;
    const wchar_t* prefix;
    bool expected;
  };
  const Row rows[] = {
      {"equal", L"C:\\Windows\\", L"C:\\Windows\\", true},
      {"other case in the text", L"c:\\wINDOWS\\x", L"C:\\Windows\\", true},
      {"other case in the prefix", L"c:\\windows\\x", L"C:\\WINDOWS\\", true},
      {"text shorter", L"C:\\Windows", L"C:\\Windows\\", false},
      {"text longer but different", L"C:\\Windowz\\x", L"C:\\Windows\\", false},
      {"sibling that extends the name", L"C:\\Windows2\\x", L"C:\\Windows\\", false},
      {"prefix further on", L"D:C:\\Windows\\", L"C:\\Windows\\", false},
      {"last character differs", L"abcd", L"abce", false},
      {"only the first character of many", L"a", L"ab", false},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(HasPrefix(row.text, row.prefix), row.expected) << row.label;
  }
}

TEST(HasPrefix, IsTrueForAnEmptyPrefix) {
  EXPECT_TRUE(HasPrefix(L"", L""));
  EXPECT_TRUE(HasPrefix(L"D:\\anything", L""));
  EXPECT_FALSE(HasPrefix(L"", L"a"));
}

TEST(TryFindPackagedFolder, FindsTheFolderAtTheRootOfADrive) {
  EXPECT_EQ(TryFindPackagedFolder(L"D:\\WindowsApps\\Some.App_1\\a.exe"), L"D:\\WindowsApps");
  EXPECT_EQ(TryFindPackagedFolder(L"D:\\WindowsApps\\"), L"D:\\WindowsApps");
  EXPECT_EQ(TryFindPackagedFolder(L"\\\\?\\E:\\WindowsApps\\a.exe"), L"\\\\?\\E:\\WindowsApps");
}

TEST(TryFindPackagedFolder, TakesTheFirstOfSeveral) {
  EXPECT_EQ(TryFindPackagedFolder(L"D:\\WindowsApps\\x:\\WindowsApps\\a.exe"), L"D:\\WindowsApps");
}

TEST(TryFindPackagedFolder, FindsOnlyTheExactSpelling) {
  EXPECT_EQ(TryFindPackagedFolder(L"d:\\windowsapps\\a.exe"), std::nullopt);
  EXPECT_EQ(TryFindPackagedFolder(L"D:\\WINDOWSAPPS\\a.exe"), std::nullopt);
}

TEST(TryFindPackagedFolder, FindsNothingInOtherPaths) {
  EXPECT_EQ(TryFindPackagedFolder(L""), std::nullopt);
  EXPECT_EQ(TryFindPackagedFolder(L"D:\\WindowsApps"), std::nullopt);
  EXPECT_EQ(TryFindPackagedFolder(L"D:\\WindowsApps2\\a.exe"), std::nullopt);
  EXPECT_EQ(TryFindPackagedFolder(L"D:\\Deeper\\WindowsApps\\a.exe"), std::nullopt);
}

}  // namespace
}  // namespace Zq::Gantry::Security
