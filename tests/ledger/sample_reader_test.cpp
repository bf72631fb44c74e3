#include "ledger/sample_reader.h"

#include <windows.h>

#include <errno.h>
#include <sys/stat.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/date_time_text.h"
#include "base/fake_attributes.h"
#include "import_patch.h"
#include "ledger/encrypted_samples.h"
#include "support/temp_folder.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::Encrypted;
using TestSupport::FileExists;
using TestSupport::Utf16;
using TestSupport::WriteWholeFile;

namespace {

class ReadSamples : public testing::Test {
 protected:
  std::unique_ptr<GenericDocument> Read() {
    return std::unique_ptr<GenericDocument>(
        ReadSamplesOfDay(folder_.Path(), TestSupport::LocalTime(2024, 3, 1),
                         [this](const std::wstring& path) { told_.push_back(path); }));
  }

  bool ReadsAnEmptyArray() {
    const auto document = Read();
    return document && document->IsArray() && document->Empty();
  }

  bool WasTold() { return told_ == std::vector<std::wstring>{encrypted_}; }

  const TestSupport::TempFolder folder_;
  const std::wstring encrypted_ = folder_.File(L"PcmSampleData_2024-03-01.json");
  const std::wstring plain_ = folder_.File(L"unencrypt-PcmSampleData_2024-03-01.json");
  std::vector<std::wstring> told_;
};

// What the standard library asks for a status.
int FailToTellStatus(const wchar_t*, struct _stat64*) {
  errno = EACCES;
  return -1;
}

int DeleteNothing(const wchar_t*) {
  errno = EACCES;
  return -1;
}

errno_t (*g_open)(std::FILE**, const wchar_t*, const wchar_t*) = nullptr;

errno_t OpenForReadingOnly(std::FILE** file, const wchar_t* path, const wchar_t* mode) {
  if (mode == std::wstring(L"rb")) return g_open(file, path, mode);
  *file = nullptr;
  return EACCES;
}

}  // namespace

TEST_F(ReadSamples, DecryptsReadsAndDeletesTheCopy) {
  WriteWholeFile(encrypted_, Encrypted(Utf16(R"([{"Power":1.5},{"Power":2}])")));
  const auto document = Read();
  ASSERT_TRUE(document);
  ASSERT_TRUE(document->IsArray());
  ASSERT_EQ(document->Size(), 2U);
  EXPECT_EQ((*document)[0]["Power"].GetDouble(), 1.5);
  EXPECT_TRUE(WasTold());
  EXPECT_FALSE(FileExists(plain_));
  EXPECT_TRUE(FileExists(encrypted_));
}

TEST_F(ReadSamples, GiveAnEmptyArrayForAnEmptyArray) {
  WriteWholeFile(encrypted_, Encrypted(Utf16("[]")));
  EXPECT_TRUE(ReadsAnEmptyArray());
  EXPECT_TRUE(WasTold());
  EXPECT_FALSE(FileExists(plain_));
}

TEST_F(ReadSamples, AreEmptyWithoutAFile) {
  EXPECT_TRUE(ReadsAnEmptyArray());
  EXPECT_TRUE(told_.empty());
}

TEST_F(ReadSamples, AreEmptyForAFileOfNoBytes) {
  WriteWholeFile(encrypted_, "");
  EXPECT_TRUE(ReadsAnEmptyArray());
  EXPECT_TRUE(WasTold());
  EXPECT_FALSE(FileExists(plain_));
}

TEST_F(ReadSamples, AreEmptyForBrokenBase64AndTheFileStays) {
  WriteWholeFile(encrypted_, "!!!!");
  EXPECT_TRUE(ReadsAnEmptyArray());
  EXPECT_TRUE(WasTold());
  EXPECT_FALSE(FileExists(plain_));
  EXPECT_EQ(TestSupport::ReadWholeFile(encrypted_), "!!!!");
}

TEST_F(ReadSamples, TakeAFolderForNoFile) {
  CreateDirectoryW(encrypted_.c_str(), nullptr);
  CreateDirectoryW(plain_.c_str(), nullptr);
  EXPECT_TRUE(ReadsAnEmptyArray());
  EXPECT_TRUE(told_.empty());
  EXPECT_TRUE(FileExists(encrypted_));
  EXPECT_TRUE(FileExists(plain_));
}

TEST_F(ReadSamples, TakeALinkForNoFile) {
  WriteWholeFile(encrypted_, Encrypted(Utf16("[1]")));
  const TestSupport::FakeReparsePoint fake(encrypted_, IO_REPARSE_TAG_SYMLINK);
  EXPECT_TRUE(ReadsAnEmptyArray());
  EXPECT_TRUE(told_.empty());
  EXPECT_FALSE(FileExists(plain_));
}

TEST_F(ReadSamples, NeitherReadNorDeleteNorWriteACopyThatIsALink) {
  WriteWholeFile(encrypted_, Encrypted(Utf16("[1]")));
  WriteWholeFile(plain_, "[2]");
  {
    const TestSupport::FakeReparsePoint fake(plain_, IO_REPARSE_TAG_SYMLINK);
    EXPECT_TRUE(ReadsAnEmptyArray());
  }
  EXPECT_TRUE(WasTold());
  EXPECT_EQ(TestSupport::ReadWholeFile(plain_), "[2]");
}

TEST_F(ReadSamples, AreNullForACopyThatDoesNotParseAndItIsDeleted) {
  for (const char* text : {"", "no JSON", "[{\"Power\":1},", "[1"}) {
    WriteWholeFile(plain_, text);
    EXPECT_FALSE(Read()) << text;
    EXPECT_FALSE(FileExists(plain_)) << text;
  }
}

TEST_F(ReadSamples, AreNullForEncryptedTextThatIsNoJson) {
  WriteWholeFile(encrypted_, Encrypted(Utf16("[{\"Power\":")));
  EXPECT_FALSE(Read());
  EXPECT_FALSE(FileExists(plain_));
  WriteWholeFile(encrypted_, Encrypted("[{\"Power\":1}]"));  // one byte a character
  EXPECT_FALSE(Read());
  EXPECT_FALSE(FileExists(plain_));
}

TEST_F(ReadSamples, TakeALeftoverCopyWithoutAnEncryptedFile) {
  WriteWholeFile(plain_, "[7]");
  const auto document = Read();
  ASSERT_TRUE(document);
  EXPECT_EQ((*document)[0].GetInt(), 7);
  EXPECT_TRUE(told_.empty());
  EXPECT_FALSE(FileExists(plain_));
}

TEST_F(ReadSamples, TakeALeftoverCopyWhenTodaysDecryptionFails) {
  WriteWholeFile(plain_, "[7]");
  WriteWholeFile(encrypted_, "!!!!");
  const auto document = Read();
  ASSERT_TRUE(document);
  EXPECT_EQ((*document)[0].GetInt(), 7);
  EXPECT_TRUE(WasTold());
  EXPECT_FALSE(FileExists(plain_));
}

TEST_F(ReadSamples, TakeAReadOnlyCopyWhichCanNeitherBeWrittenNorDeleted) {
  WriteWholeFile(plain_, "[7]");
  WriteWholeFile(encrypted_, Encrypted(Utf16("[1]")));
  {
    // Fake, since some systems let an administrator write and delete it all the same.
    const Standin::ImportPatch deletion("_wunlink", &DeleteNothing);
    const Standin::ImportPatch opening("_wfopen_s", &OpenForReadingOnly);
    g_open = opening.Original<decltype(OpenForReadingOnly)>();
    const auto document = Read();
    ASSERT_TRUE(document);
    EXPECT_EQ((*document)[0].GetInt(), 7);
  }
  EXPECT_TRUE(FileExists(plain_));
  const auto next = Read();
  ASSERT_TRUE(next);
  EXPECT_EQ((*next)[0].GetInt(), 1);
  EXPECT_FALSE(FileExists(plain_));
}

TEST_F(ReadSamples, AreAnnouncedBeforeTheyAreDecrypted) {
  WriteWholeFile(encrypted_, Encrypted(Utf16("[1]")));
  bool wasThere = true;
  const std::unique_ptr<GenericDocument> document(
      ReadSamplesOfDay(folder_.Path(), TestSupport::LocalTime(2024, 3, 1),
                       [&](const std::wstring&) { wasThere = FileExists(plain_); }));
  EXPECT_FALSE(wasThere);
  EXPECT_TRUE(document);
}

TEST_F(ReadSamples, AreGivenAsTheyAreWhenTheyAreNoArray) {
  WriteWholeFile(encrypted_, Encrypted(Utf16("{\"Power\":1}")));
  const auto document = Read();
  ASSERT_TRUE(document);
  EXPECT_TRUE(document->IsObject());
}

TEST_F(ReadSamples, AreNullForSixtyFourMegabytesOfOneBracket) {
  WriteWholeFile(plain_, std::string(64U << 20, '['));
  EXPECT_FALSE(Read());
  EXPECT_FALSE(FileExists(plain_));
  WriteWholeFile(encrypted_, Encrypted(Utf16(std::string(1U << 20, '['))));
  EXPECT_FALSE(Read());
  EXPECT_FALSE(FileExists(plain_));
}

TEST_F(ReadSamples, PassTheExceptionOfAStatusQueryOn) {
  WriteWholeFile(encrypted_, Encrypted(Utf16("[]")));
  const Standin::ImportPatch patch("_wstat64", &FailToTellStatus);
  EXPECT_THROW(Read(), std::filesystem::filesystem_error);
  EXPECT_TRUE(told_.empty());
}

TEST_F(ReadSamples, OfADayThatCountsAsGoneComeFromALeftoverCopyOnly) {
  WriteWholeFile(encrypted_, Encrypted(Utf16("[1]")));
  const auto readGone = [this] {
    return std::unique_ptr<GenericDocument>(
        ReadLeftoverCopyOfDay(folder_.Path(), TestSupport::LocalTime(2024, 3, 1)));
  };
  const auto empty = readGone();
  ASSERT_TRUE(empty && empty->IsArray());
  EXPECT_TRUE(empty->Empty());
  WriteWholeFile(plain_, "[7]");
  const auto left = readGone();
  ASSERT_TRUE(left);
  EXPECT_EQ((*left)[0].GetInt(), 7);
  EXPECT_FALSE(FileExists(plain_));
  EXPECT_TRUE(FileExists(encrypted_));
}

TEST_F(ReadSamples, OfADayThatCountsAsGoneAskNothingOfTheEncryptedFile) {
  WriteWholeFile(encrypted_, Encrypted(Utf16("[1]")));
  // The status of the encrypted file cannot be read; that of the copy is not asked, as it is
  // absent.
  const Standin::ImportPatch patch("_wstat64", &FailToTellStatus);
  EXPECT_NO_THROW(std::unique_ptr<GenericDocument>(
      ReadLeftoverCopyOfDay(folder_.Path(), TestSupport::LocalTime(2024, 3, 1))));
}

TEST_F(ReadSamples, LeaveNoCopyOfAnyDayAfterTheRemoval) {
  const std::wstring other = folder_.File(L"unencrypt-PcmSampleData_1999-12-31.json");
  WriteWholeFile(plain_, "[7]");
  WriteWholeFile(other, "");
  RemoveLeftoverCopies(folder_.Path());
  EXPECT_FALSE(FileExists(plain_));
  EXPECT_FALSE(FileExists(other));
  RemoveLeftoverCopies(folder_.Path());
  RemoveLeftoverCopies(folder_.File(L"missing"));
}

TEST_F(ReadSamples, LoseNothingButCopiesInTheRemoval) {
  const std::vector<std::wstring> names{L"PcmSampleData_2024-03-01.json",
                                        L"PowerConsumption.json",
                                        L"Powerlog.json",
                                        L"unencrypt-PcmSampleData_2024-03-01.json.bak",
                                        L"unencrypt-PcmSampleData_2024-03-012.json",
                                        L"unencrypt-PcmSampleData.json",
                                        L"an unencrypt-PcmSampleData_2024-03-01.json"};
  for (const std::wstring& name : names) WriteWholeFile(folder_.File(name), "x");
  RemoveLeftoverCopies(folder_.Path());
  for (const std::wstring& name : names) EXPECT_TRUE(FileExists(folder_.File(name)));
}

TEST_F(ReadSamples, LoseNoFolderAndNoLinkInTheRemoval) {
  const std::wstring asFolder = folder_.File(L"unencrypt-PcmSampleData_2024-03-02.json");
  const std::wstring after = folder_.File(L"unencrypt-PcmSampleData_2024-03-03.json");
  WriteWholeFile(plain_, "[7]");
  CreateDirectoryW(asFolder.c_str(), nullptr);
  WriteWholeFile(after, "[7]");
  {
    const TestSupport::FakeReparsePoint fake(plain_, IO_REPARSE_TAG_SYMLINK);
    RemoveLeftoverCopies(folder_.Path());
  }
  EXPECT_TRUE(FileExists(plain_));
  EXPECT_TRUE(FileExists(asFolder));
  EXPECT_FALSE(FileExists(after));
}

TEST_F(ReadSamples, LoseNoCopyWhoseStatusCannotBeReadInTheRemoval) {
  WriteWholeFile(plain_, "[7]");
  const Standin::ImportPatch patch("_wstat64", &FailToTellStatus);
  RemoveLeftoverCopies(folder_.Path());
  EXPECT_TRUE(FileExists(plain_));
}
