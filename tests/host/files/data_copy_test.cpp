#include "files/data_copy.h"

#include <windows.h>

#include <aclapi.h>

#include <map>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "base/date_time_text.h"
#include "base/failing_status.h"
#include "base/fake_attributes.h"
#include "base/json_limits.h"
#include "files/file_failure.h"
#include "files/private_folder.h"
#include "import_patch.h"
#include "platform/win32/owners.h"
#include "reports/power_budget.h"
#include "support/scoped_variable.h"
#include "support/temp_folder.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace WattleafHost;
using TestSupport::FileExists;
using TestSupport::ReadWholeFile;
using TestSupport::TempFolder;
using TestSupport::WriteWholeFile;
using Zq::Gantry::Platform::UniqueFileHandle;
using Zq::Gantry::Platform::UniqueFindHandle;
using Zq::Gantry::Platform::UniqueLocalBlock;

namespace {

std::uint64_t Number(FILETIME time) {
  return std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
}

/// Attributes, times of creation and last change, and bytes of each entry of a folder, by name.
using FolderState =
    std::map<std::wstring, std::tuple<DWORD, std::uint64_t, std::uint64_t, std::string>>;

FolderState StateOf(const std::wstring& folder) {
  FolderState state;
  WIN32_FIND_DATAW entry{};
  const UniqueFindHandle search(FindFirstFileW((folder + L"\\*").c_str(), &entry));
  do {
    const std::wstring name = entry.cFileName;
    const bool isFolder = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (name == L"..") continue;
    state[name] = {entry.dwFileAttributes, Number(entry.ftCreationTime),
                   Number(entry.ftLastWriteTime),
                   isFolder ? std::string() : ReadWholeFile(folder + L"\\" + name)};
  } while (FindNextFileW(search.get(), &entry));
  return state;
}

/// A file of so many bytes that takes no space on the disk.
void MakeSparseFile(const std::wstring& path, std::uint64_t bytes) {
  const UniqueFileHandle file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                          FILE_ATTRIBUTE_NORMAL, nullptr));
  LARGE_INTEGER end{};
  end.QuadPart = static_cast<LONGLONG>(bytes);
  ASSERT_TRUE(SetFilePointerEx(file.get(), end, nullptr, FILE_BEGIN));
  ASSERT_TRUE(SetEndOfFile(file.get()));
}

void SetLastChange(const std::wstring& path, FILETIME time) {
  const UniqueFileHandle file(
      CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(SetFileTime(file.get(), nullptr, nullptr, &time));
}

FILETIME LastChange(const std::wstring& path) {
  WIN32_FILE_ATTRIBUTE_DATA data{};
  EXPECT_TRUE(GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data));
  return data.ftLastWriteTime;
}

DWORD WINAPI ReturnPipe(HANDLE) { return FILE_TYPE_PIPE; }

constexpr wchar_t kLedger[] = L"PowerConsumption.json";

}  // namespace

TEST(DataCopy, HasTheBytesAndTheTimeOfEachFileThatWasAskedFor) {
  const TempFolder source;
  const std::string bytes = std::string(70'000, 'x') + std::string("\0\xFF\r\n", 4);
  WriteWholeFile(source.File(kLedger), bytes);
  WriteWholeFile(source.File(L"Powerlog.json"), "");
  const FILETIME changed{0x12345600, 0x01D90000};
  SetLastChange(source.File(kLedger), changed);

  DataCopy copy(source.Path());
  EXPECT_FALSE(FileExists(copy.File(kLedger)));
  EXPECT_TRUE(copy.Add(kLedger));
  EXPECT_TRUE(copy.Add(L"Powerlog.json"));
  EXPECT_EQ(ReadWholeFile(copy.File(kLedger)), bytes);
  EXPECT_EQ(ReadWholeFile(copy.File(L"Powerlog.json")), "");
  EXPECT_EQ(Number(LastChange(copy.File(kLedger))), Number(changed));
  EXPECT_EQ(copy.File(kLedger), copy.Folder() + L"\\PowerConsumption.json");
  EXPECT_TRUE(copy.LeftOut().empty());
}

TEST(DataCopy, HasTheSampleFileAndAPlainCopyThatWasLeft) {
  const TempFolder source;
  WriteWholeFile(source.File(L"PcmSampleData_2024-03-01.json"), "encrypted");
  WriteWholeFile(source.File(L"unencrypt-PcmSampleData_2024-03-01.json"), "[]");
  WriteWholeFile(source.File(L"PcmSampleData_2024-03-02.json"), "another day");
  DataCopy copy(source.Path());
  copy.AddSamplesOf(TestSupport::LocalTime(2024, 3, 1));
  EXPECT_EQ(ReadWholeFile(copy.File(L"PcmSampleData_2024-03-01.json")), "encrypted");
  EXPECT_EQ(ReadWholeFile(copy.File(L"unencrypt-PcmSampleData_2024-03-01.json")), "[]");
  EXPECT_FALSE(FileExists(copy.File(L"PcmSampleData_2024-03-02.json")));
}

TEST(DataCopy, LeavesTheDataFolderAsItWas) {
  const TempFolder source;
  WriteWholeFile(source.File(kLedger), "[]");
  WriteWholeFile(source.File(L"PcmSampleData_2024-03-01.json"), "encrypted");
  SetLastChange(source.File(kLedger), FILETIME{0x12345600, 0x01D90000});
  SetFileAttributesW(source.File(kLedger).c_str(), FILE_ATTRIBUTE_READONLY);
  ASSERT_TRUE(CreateDirectoryW(source.File(L"Powerlog.json").c_str(), nullptr));
  const FolderState before = StateOf(source.Path());
  ASSERT_EQ(before.size(), 4U);
  {
    DataCopy copy(source.Path());
    copy.Add(kLedger);
    copy.Add(L"Powerlog.json");
    copy.Add(L"Powerlog.xml");
    copy.AddSamplesOf(TestSupport::LocalTime(2024, 3, 1));
    WriteWholeFile(copy.File(kLedger), "[1]");
    ASSERT_TRUE(DeleteFileW(copy.File(L"PcmSampleData_2024-03-01.json").c_str()));
    WriteWholeFile(copy.File(L"unencrypt-PcmSampleData_2024-03-01.json"), "[]");
  }
  EXPECT_EQ(StateOf(source.Path()), before);
}

TEST(DataCopy, LeavesOutAFolderInThePlaceOfAFileAndNamesIt) {
  const TempFolder source;
  ASSERT_TRUE(CreateDirectoryW(source.File(kLedger).c_str(), nullptr));
  DataCopy copy(source.Path());
  EXPECT_FALSE(copy.Add(kLedger));
  EXPECT_FALSE(copy.Add(kLedger));
  EXPECT_FALSE(FileExists(copy.File(kLedger)));
  ASSERT_EQ(copy.LeftOut().size(), 1U);
  EXPECT_EQ(copy.LeftOut()[0].name, kLedger);
  EXPECT_EQ(copy.LeftOut()[0].reason, LeftOutReason::kFolder);
  EXPECT_STREQ(LeftOutText(LeftOutReason::kFolder), "a folder");
  ASSERT_TRUE(copy.FindLeftOut(kLedger).has_value());
  EXPECT_FALSE(copy.FindLeftOut(L"Powerlog.json").has_value());
}

TEST(DataCopy, LeavesOutALinkAndNamesIt) {
  const TempFolder source;
  WriteWholeFile(source.File(kLedger), "[]");
  const TestSupport::FakeReparsePoint link(source.File(kLedger), IO_REPARSE_TAG_SYMLINK);
  DataCopy copy(source.Path());
  EXPECT_FALSE(copy.Add(kLedger));
  ASSERT_EQ(copy.LeftOut().size(), 1U);
  EXPECT_EQ(copy.LeftOut()[0].reason, LeftOutReason::kLink);
  EXPECT_STREQ(LeftOutText(LeftOutReason::kLink), "a link");
}

TEST(DataCopy, HasAFileWhoseContentIsDeduplicated) {
  const TempFolder source;
  WriteWholeFile(source.File(kLedger), "[]");
  const TestSupport::FakeReparsePoint deduplicated(source.File(kLedger), 0x80000013);
  DataCopy copy(source.Path());
  EXPECT_TRUE(copy.Add(kLedger));
}

TEST(DataCopy, LeavesOutAPipeAndNamesIt) {
  const TempFolder source;
  WriteWholeFile(source.File(kLedger), "[]");
  const Standin::ImportPatch pipe("GetFileType", &ReturnPipe);
  DataCopy copy(source.Path());
  EXPECT_FALSE(copy.Add(kLedger));
  ASSERT_EQ(copy.LeftOut().size(), 1U);
  EXPECT_EQ(copy.LeftOut()[0].reason, LeftOutReason::kNoFile);
  EXPECT_STREQ(LeftOutText(LeftOutReason::kNoFile), "a pipe or a device");
}

TEST(DataCopy, NamesAFileWhoseStatusCannotBeRead) {
  const TempFolder source;
  WriteWholeFile(source.File(kLedger), "[]");
  const TestSupport::FailingStatus failure;
  DataCopy copy(source.Path());
  EXPECT_FALSE(copy.Add(kLedger));
  ASSERT_EQ(copy.LeftOut().size(), 1U);
  EXPECT_EQ(copy.LeftOut()[0].reason, LeftOutReason::kUnreadable);
}

TEST(DataCopy, NamesAFileThatAnotherProgramHasOpenAlone) {
  const TempFolder source;
  WriteWholeFile(source.File(kLedger), "[]");
  const UniqueFileHandle alone(CreateFileW(source.File(kLedger).c_str(), GENERIC_READ, /*share=*/0,
                                           nullptr, OPEN_EXISTING, 0, nullptr));
  DataCopy copy(source.Path());
  EXPECT_FALSE(copy.Add(kLedger));
  ASSERT_EQ(copy.LeftOut().size(), 1U);
  EXPECT_EQ(copy.LeftOut()[0].reason, LeftOutReason::kUnreadable);
  EXPECT_EQ(copy.LeftOut()[0].systemError, DWORD{ERROR_SHARING_VIOLATION});
  EXPECT_STREQ(LeftOutText(LeftOutReason::kUnreadable), "not readable by this user");
}

TEST(DataCopy, HasAFileThatAnotherProgramIsWriting) {
  const TempFolder source;
  const UniqueFileHandle writer(CreateFileW(source.File(kLedger).c_str(), GENERIC_WRITE,
                                            FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                                            CREATE_ALWAYS, 0, nullptr));
  DataCopy copy(source.Path());
  EXPECT_TRUE(copy.Add(kLedger));
}

TEST(DataCopy, LeavesOutWhatTheLibraryFindsTooLarge) {
  struct Case {
    const wchar_t* name;
    std::uint64_t largestBytes;
  };
  const Case cases[] = {{kLedger, 64U * 1024 * 1024},
                        {L"PcmSampleData_2024-03-01.json", 64U * 1024 * 1024},
                        {L"Powerlog.json", 128U * 1024 * 1024}};
  for (const auto& [name, largestBytes] : cases) {
    const TempFolder source;
    MakeSparseFile(source.File(name), largestBytes + 1);
    DataCopy copy(source.Path());
    EXPECT_FALSE(copy.Add(name));
    ASSERT_EQ(copy.LeftOut().size(), 1U) << name;
    EXPECT_EQ(copy.LeftOut()[0].reason, LeftOutReason::kTooLarge);
    EXPECT_FALSE(FileExists(copy.File(name)));

    MakeSparseFile(source.File(name), largestBytes);
    DataCopy second(source.Path());
    EXPECT_TRUE(second.Add(name)) << name;
  }
  EXPECT_STREQ(LeftOutText(LeftOutReason::kTooLarge), "too large");
}

TEST(DataCopy, LeavesOutAReportWhoseTextExceedsTheBudget) {
  const TempFolder source;
  MakeSparseFile(source.File(L"Powerlog.xml"), kMostReportTreeBytes);
  DataCopy copy(source.Path());
  EXPECT_FALSE(copy.Add(L"Powerlog.xml"));
  ASSERT_EQ(copy.LeftOut().size(), 1U);
  EXPECT_EQ(copy.LeftOut()[0].reason, LeftOutReason::kTooLarge);
}

TEST(DataCopy, SkipsMissingFilesAndAMissingFolder) {
  const TempFolder source;
  for (const std::wstring& folder : {source.Path(), source.File(L"missing")}) {
    DataCopy copy(folder);
    EXPECT_FALSE(copy.Add(kLedger));
    EXPECT_TRUE(copy.LeftOut().empty());
  }
}

TEST(DataCopy, IsRemovedWithAllThatItHoldsAlsoAfterAnException) {
  const TempFolder source;
  WriteWholeFile(source.File(kLedger), "[]");
  std::wstring folder;
  try {
    DataCopy copy(source.Path());
    folder = copy.Folder();
    copy.Add(kLedger);
    ASSERT_TRUE(CreateDirectoryW(copy.File(L"Icons").c_str(), nullptr));
    WriteWholeFile(copy.File(L"Icons\\1.png"), "x");
    ASSERT_TRUE(FileExists(copy.File(L"Icons\\1.png")));
    throw std::runtime_error("a failure");
  } catch (const std::runtime_error&) {
  }
  ASSERT_FALSE(folder.empty());
  EXPECT_FALSE(FileExists(folder));
}

TEST(DataCopy, IsAFolderOfItsOwnEachTime) {
  const TempFolder source;
  const DataCopy first(source.Path());
  const DataCopy second(source.Path());
  EXPECT_NE(first.Folder(), second.Folder());
  EXPECT_TRUE(FileExists(first.Folder()));
  EXPECT_TRUE(FileExists(second.Folder()));
}

TEST(DataCopy, LetsOnlyTheUserTheSystemAndAdministratorsIn) {
  const DataCopy copy(L"C:\\missing");
  ACL* list = nullptr;
  void* descriptor = nullptr;
  ASSERT_EQ(GetNamedSecurityInfoW(copy.Folder().c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION,
                                  nullptr, nullptr, &list, nullptr, &descriptor),
            DWORD{ERROR_SUCCESS});
  const UniqueLocalBlock block(descriptor);
  ASSERT_NE(list, nullptr);
  for (DWORD i = 0; i < list->AceCount; ++i) {
    void* entry = nullptr;
    ASSERT_TRUE(GetAce(list, i, &entry));
    auto* allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
    if (allowed->Header.AceType != ACCESS_ALLOWED_ACE_TYPE) continue;
    for (const auto kind : {WinWorldSid, WinAuthenticatedUserSid, WinBuiltinUsersSid}) {
      EXPECT_FALSE(IsWellKnownSid(&allowed->SidStart, kind)) << kind;
    }
  }
}

TEST(DataCopy, ThrowsWithTheFolderAndTheRemedyIfNoneCanBeMade) {
  const TempFolder place;
  const TestSupport::ScopedVariable tmp(L"TMP", place.File(L"missing"));
  const TestSupport::ScopedVariable temp(L"TEMP", place.File(L"missing"));
  try {
    const DataCopy copy(L"C:\\missing");
    FAIL() << "made in a folder that does not exist";
  } catch (const FileFailure& failure) {
    const std::string text = failure.what();
    EXPECT_NE(text.find("missing"), std::string::npos) << text;
    EXPECT_NE(text.find("set TEMP to a folder"), std::string::npos) << text;
  }
}

#ifdef WATTLEAF_SPECIAL_FILES
TEST(DataCopy, FollowsNeitherARealLinkNorAPipe) {
  const std::wstring folder = WATTLEAF_SPECIAL_FILES;
  if (!TestSupport::FileExists(folder)) GTEST_SKIP() << "the links of the build are not here";
  DataCopy copy(folder);
  EXPECT_FALSE(copy.Add(kLedger));
  EXPECT_FALSE(copy.Add(L"Powerlog.json"));
  ASSERT_EQ(copy.LeftOut().size(), 2U);
  EXPECT_EQ(copy.LeftOut()[0].reason, LeftOutReason::kLink);
  EXPECT_EQ(copy.LeftOut()[1].name, L"Powerlog.json");
  EXPECT_EQ(ReadWholeFile(folder + L"\\target\\witness.txt"), "untouched");
}
#endif
