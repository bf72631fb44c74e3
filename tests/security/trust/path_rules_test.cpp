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
      {"prefix later in the text", L"D:C:\\Windows\\", L"C:\\Windows\\", false},
      {"last character differs", L"abcd", L"abce", false},
      {"first character only", L"a", L"ab", false},
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

struct NamedPath {
  const char* label;
  const wchar_t* path;
};

TEST(NamesADevice, IsTrueForPipesAndMailslotsOfThisMachine) {
  const NamedPath rows[] = {
      {"pipe", L"\\\\.\\pipe\\name"},
      {"other case", L"\\\\.\\PiPe\\name"},
      {"slashes", L"//./pipe/name"},
      {"unparsed prefix", L"\\\\?\\pipe\\name"},
      {"NT prefix", L"\\??\\pipe\\name"},
      {"pipe of several components", L"\\\\.\\pipe\\folder\\name"},
      {"several separators", L"\\\\.\\\\pipe\\\\name"},
      {"folder of all pipes", L"\\\\.\\pipe\\"},
      {"mailslot", L"\\\\.\\mailslot\\name"},
      {"through the global folder", L"\\\\.\\Global\\pipe\\name"},
      {"through the root", L"\\\\?\\GLOBALROOT\\Device\\NamedPipe\\name"},
      {"mailslot through the root", L"\\\\?\\GLOBALROOT\\Device\\Mailslot\\name"},
      {"through the ?? folder of the root", L"\\\\?\\GLOBALROOT\\??\\pipe\\name"},
      {"through GLOBAL??", L"\\\\?\\GLOBALROOT\\GLOBAL??\\pipe\\name"},
      {"through DosDevices", L"\\\\?\\GLOBALROOT\\DosDevices\\pipe\\name"},
  };
  for (const NamedPath& row : rows) EXPECT_TRUE(NamesADevice(row.path)) << row.label;
}

TEST(NamesADevice, IsTrueForPipesAndMailslotsOfAServer) {
  const NamedPath rows[] = {
      {"pipe", L"\\\\server\\pipe\\name"},
      {"other case", L"\\\\SERVER\\PIPE\\name"},
      {"slashes", L"//server/pipe/name"},
      {"mailslot", L"\\\\server\\mailslot\\name"},
      {"share of pipes", L"\\\\server\\IPC$\\name"},
      {"unparsed prefix", L"\\\\?\\UNC\\server\\pipe\\name"},
      {"device prefix", L"\\\\.\\unc\\server\\pipe\\name"},
      {"through the root", L"\\\\?\\GLOBALROOT\\??\\UNC\\server\\pipe\\name"},
  };
  for (const NamedPath& row : rows) EXPECT_TRUE(NamesADevice(row.path)) << row.label;
}

TEST(NamesADevice, IsTrueForDevicesAndVolumes) {
  const NamedPath rows[] = {
      {"port", L"\\\\.\\COM1"},
      {"null device", L"\\\\.\\NUL"},
      {"console", L"\\\\.\\CONIN$"},
      {"disk", L"\\\\.\\PhysicalDrive0"},
      {"volume", L"\\\\.\\C:"},
      {"volume, unparsed", L"\\\\?\\C:"},
      {"root of a volume", L"\\\\?\\C:\\"},
      {"volume by its number", L"\\\\?\\Volume{00000000-0000-0000-0000-000000000000}"},
      {"device of the root", L"\\\\?\\GLOBALROOT\\Device\\Null"},
      {"device prefix alone", L"\\\\.\\"},
      {"device prefix without separator", L"\\\\."},
      {"NT prefix alone", L"\\??"},
  };
  for (const NamedPath& row : rows) EXPECT_TRUE(NamesADevice(row.path)) << row.label;
}

TEST(NamesADevice, IsFalseForFilesOnADiskOrAShare) {
  const NamedPath rows[] = {
      {"empty", L""},
      {"separator", L"\\"},
      {"absolute", L"C:\\pipe\\name"},
      {"relative", L"pipe\\name"},
      {"relative to the current root", L"\\pipe\\name"},
      {"question marks later in the text", L"\\x??\\pipe\\name"},
      {"unparsed", L"\\\\?\\C:\\folder\\file.dll"},
      {"folder called pipe", L"\\\\?\\C:\\pipe\\file.dll"},
      {"device prefix", L"\\\\.\\C:\\folder\\file.dll"},
      {"volume by its number", L"\\\\?\\Volume{0}\\file.dll"},
      {"volume of the root", L"\\\\?\\GLOBALROOT\\Device\\HarddiskVolume1\\file.dll"},
      {"share", L"\\\\server\\share\\file.dll"},
      {"share, unparsed", L"\\\\?\\UNC\\server\\share\\file.dll"},
      {"share called pipes", L"\\\\server\\pipes\\file.dll"},
      {"share called pip", L"\\\\server\\pip\\file.dll"},
      {"server called pipe", L"\\\\pipe\\share\\file.dll"},
      {"folder of a share", L"\\\\server\\share\\pipe\\file.dll"},
      {"hidden share", L"\\\\server\\c$\\file.dll"},
      {"letters beyond ASCII", L"\\\\server\\p\u0131pe\\file.dll"},
  };
  for (const NamedPath& row : rows) EXPECT_FALSE(NamesADevice(row.path)) << row.label;
}

}  // namespace
}  // namespace Zq::Gantry::Security
