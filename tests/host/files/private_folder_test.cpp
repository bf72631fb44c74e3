#include "files/private_folder.h"

#include <windows.h>

#include <aclapi.h>

#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "import_patch.h"
#include "platform/win32/owners.h"
#include "support/scoped_variable.h"
#include "support/temp_folder.h"

namespace {

using Zq::Gantry::Platform::UniqueFileHandle;

/// The folder for temporary files, while this object exists.
class TemporaryPlace {
 public:
  explicit TemporaryPlace(const std::wstring& path) : tmp_(L"TMP", path), temp_(L"TEMP", path) {}

 private:
  const TestSupport::ScopedVariable tmp_;
  const TestSupport::ScopedVariable temp_;
};

/// A folder with a file and a folder in it, last changed so many minutes ago.
std::wstring MakeFolder(const std::wstring& path, std::int64_t minutesAgo) {
  EXPECT_TRUE(CreateDirectoryW(path.c_str(), nullptr));
  EXPECT_TRUE(CreateDirectoryW((path + L"\\tool").c_str(), nullptr));
  TestSupport::WriteWholeFile(path + L"\\tool\\Powerlog.xml", "x");
  TestSupport::WriteWholeFile(path + L"\\Powerlog.json", "[]");
  FILETIME time{};
  GetSystemTimeAsFileTime(&time);
  const auto count = (std::int64_t{time.dwHighDateTime} << 32 | std::int64_t{time.dwLowDateTime}) -
                     minutesAgo * 60 * 10'000'000;
  time = {static_cast<DWORD>(count), static_cast<DWORD>(count >> 32)};
  const UniqueFileHandle folder(CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr,
                                            OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  EXPECT_TRUE(SetFileTime(folder.get(), nullptr, nullptr, &time));
  return path;
}

constexpr std::int64_t kMoreThanADay = 24 * 60 + 1;
constexpr std::int64_t kLessThanADay = 24 * 60 - 1;

/// Makes a private folder and removes it, as each subcommand that needs one does.
void UsePrivateFolder() {
  const std::wstring folder = WattleafHost::MakePrivateFolder();
  EXPECT_TRUE(TestSupport::FileExists(folder));
  WattleafHost::RemoveFolderTree(folder);
}

/// The file belongs to no user of this machine.
DWORD WINAPI OwnedByAnother(wchar_t*, SE_OBJECT_TYPE, SECURITY_INFORMATION, PSID* owner, PSID*,
                            PACL*, PACL*, PSECURITY_DESCRIPTOR* descriptor) {
  DWORD bytes = SECURITY_MAX_SID_SIZE;
  *descriptor = LocalAlloc(LPTR, bytes);
  *owner = *descriptor;
  return CreateWellKnownSid(WinWorldSid, nullptr, *owner, &bytes) ? ERROR_SUCCESS : GetLastError();
}

}  // namespace

TEST(PrivateFolder, RemovesFoldersThatKilledProcessesLeftMoreThanADayAgo) {
  const TestSupport::TempFolder place;
  const TemporaryPlace temporary(place.Path());
  const auto first = MakeFolder(place.File(L"wattleaf-host-17-0"), kMoreThanADay);
  const auto second = MakeFolder(place.File(L"wattleaf-host-4294967295-12"), kMoreThanADay);
  UsePrivateFolder();
  EXPECT_FALSE(TestSupport::FileExists(first));
  EXPECT_FALSE(TestSupport::FileExists(second));
}

TEST(PrivateFolder, KeepsAFolderOfTheLastDay) {
  const TestSupport::TempFolder place;
  const TemporaryPlace temporary(place.Path());
  const auto folder = MakeFolder(place.File(L"wattleaf-host-17-0"), kLessThanADay);
  UsePrivateFolder();
  EXPECT_TRUE(TestSupport::FileExists(folder + L"\\tool\\Powerlog.xml"));
}

TEST(PrivateFolder, KeepsOldFoldersAndFilesThatItDidNotMake) {
  const TestSupport::TempFolder place;
  const TemporaryPlace temporary(place.Path());
  for (const wchar_t* name :
       {L"wattleaf-host-17", L"wattleaf-host-17-", L"wattleaf-host--0", L"wattleaf-host-17-0x",
        L"wattleaf-host-a7-0", L"wattleaf-host-17-0-1", L"wattleaf-hosts-17-0", L"other"}) {
    const auto folder = MakeFolder(place.File(name), kMoreThanADay);
    UsePrivateFolder();
    EXPECT_TRUE(TestSupport::FileExists(folder + L"\\Powerlog.json")) << folder;
  }
  const std::wstring file = place.File(L"wattleaf-host-18-0");
  TestSupport::WriteWholeFile(file, "x");
  {
    const FILETIME old{0, 0x01D00000};  // 2014
    const UniqueFileHandle handle(
        CreateFileW(file.c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(SetFileTime(handle.get(), nullptr, nullptr, &old));
  }
  UsePrivateFolder();
  EXPECT_TRUE(TestSupport::FileExists(file));
}

TEST(PrivateFolder, KeepsAnOldFolderOfAnotherUser) {
  const TestSupport::TempFolder place;
  const TemporaryPlace temporary(place.Path());
  const auto folder = MakeFolder(place.File(L"wattleaf-host-17-0"), kMoreThanADay);
  {
    const Standin::ImportPatch owner("GetNamedSecurityInfoW", &OwnedByAnother);
    UsePrivateFolder();
  }
  EXPECT_TRUE(TestSupport::FileExists(folder + L"\\Powerlog.json"));
}

#ifdef WATTLEAF_SPECIAL_FILES
TEST(PrivateFolder, FollowsNoLinkInThePlaceOfAnOldFolder) {
  const std::wstring special = WATTLEAF_SPECIAL_FILES;
  const TemporaryPlace temporary(special + L"\\temporary");
  UsePrivateFolder();
  EXPECT_EQ(TestSupport::ReadWholeFile(special + L"\\target\\witness.txt"), "untouched");
}
#endif
