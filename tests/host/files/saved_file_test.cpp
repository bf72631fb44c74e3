#include "files/saved_file.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/utf8_text.h"
#include "files/file_failure.h"
#include "platform/win32/owners.h"
#include "support/temp_folder.h"

using TestSupport::ReadWholeFile;
using TestSupport::TempFolder;
using WattleafHost::FileFailure;
using WattleafHost::SaveFile;
using Zq::Gantry::Server::Services::Wattleaf::ToUtf8;

namespace {

std::vector<std::wstring> NamesIn(const TempFolder& folder) {
  std::vector<std::wstring> names;
  WIN32_FIND_DATAW entry{};
  const Zq::Gantry::Platform::UniqueFindHandle search(
      FindFirstFileW(folder.File(L"*").c_str(), &entry));
  do {
    const std::wstring name = entry.cFileName;
    if (name != L"." && name != L"..") names.push_back(name);
  } while (FindNextFileW(search.get(), &entry));
  return names;
}

std::string FailureOf(const std::wstring& path) {
  try {
    SaveFile(ToUtf8(path), "new");
  } catch (const FileFailure& failure) {
    return failure.what();
  }
  return "no failure";
}

}  // namespace

TEST(SaveFile, WritesANewFileAndReplacesAnOldOne) {
  const TempFolder folder;
  const std::wstring path = folder.File(L"w\u00E4rme.prom");
  SaveFile(ToUtf8(path), "a longer first content\n");
  EXPECT_EQ(ReadWholeFile(path), "a longer first content\n");
  SaveFile(ToUtf8(path), "second\n");
  EXPECT_EQ(ReadWholeFile(path), "second\n");
  EXPECT_EQ(NamesIn(folder), std::vector<std::wstring>{L"w\u00E4rme.prom"});
}

TEST(SaveFile, NamesTheFileAndTheRemedyIfTheFolderIsMissing) {
  const TempFolder folder;
  const std::wstring path = folder.File(L"missing\\a.prom");
  EXPECT_EQ(FailureOf(path),
            "cannot write " + ToUtf8(path) +
                " (Windows error 3); choose a folder that exists and that you may write to");
}

TEST(SaveFile, LeavesNothingBesideAFolderThatItCannotReplace) {
  const TempFolder folder;
  const std::wstring path = folder.File(L"a.prom");
  ASSERT_TRUE(CreateDirectoryW(path.c_str(), nullptr));
  EXPECT_THAT(FailureOf(path), testing::HasSubstr("cannot write "));
  EXPECT_EQ(NamesIn(folder), std::vector<std::wstring>{L"a.prom"});
}

TEST(SaveFile, ReplacesTheUnfinishedFileOfAnEarlierProcessOfTheSameNumber) {
  const TempFolder folder;
  TestSupport::WriteWholeFile(folder.File(L"a.prom.new-" + std::to_wstring(GetCurrentProcessId())),
                              "half");
  SaveFile(ToUtf8(folder.File(L"a.prom")), "whole");
  EXPECT_EQ(ReadWholeFile(folder.File(L"a.prom")), "whole");
  EXPECT_EQ(NamesIn(folder), std::vector<std::wstring>{L"a.prom"});
}
