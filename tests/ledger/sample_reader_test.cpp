#include "ledger/sample_reader.h"

#include <windows.h>

#include <errno.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/failing_status.h"
#include "base/fake_attributes.h"
#include "base/json_document.h"
#include "import_patch.h"
#include "ledger/encrypted_samples.h"
#include "ledger/sample_folder.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::Encrypted;
using TestSupport::FailingStatus;
using TestSupport::FakeReparsePoint;
using TestSupport::FileExists;
using TestSupport::ReadWholeFile;
using TestSupport::Utf16;
using TestSupport::WriteWholeFile;

namespace {

class UseSamplesOfDayTest : public testing::Test {
 protected:
  /// Uses the day's samples by `use` and records the paths of the files to be decrypted.
  bool Use(const PlainCopyUse& use) {
    const auto decrypt = [this](const std::wstring& path) {
      reported_.push_back(path);
      EXPECT_FALSE(DecryptSampleFile(path));
    };
    return UseSamplesOfDay(samples_.folder.Path(), samples_.day, decrypt, use);
  }

  /// The document of the plain copy; null without one, and for one that does not parse.
  std::unique_ptr<GenericDocument> Read() {
    std::unique_ptr<GenericDocument> document;
    const bool hasCopy = Use([&](const std::wstring& path) {
      EXPECT_EQ(path, samples_.plain);
      document.reset(LoadJsonDocument(path));
    });
    EXPECT_TRUE(hasCopy);
    return document;
  }

  bool HasNoCopy() {
    return !Use([](const std::wstring& path) { ADD_FAILURE() << "used " << path.size(); });
  }

  bool ReportedTheEncryptedFile() const {
    return reported_ == std::vector<std::wstring>{samples_.encrypted};
  }

  const TestSupport::SampleFolder samples_{};
  std::vector<std::wstring> reported_;
};

int FailToDelete(const wchar_t*) {
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

TEST_F(UseSamplesOfDayTest, DecryptsReadsAndDeletesTheCopy) {
  WriteWholeFile(samples_.encrypted, Encrypted(Utf16(R"([{"Power":1.5},{"Power":2}])")));
  const auto document = Read();
  ASSERT_TRUE(document);
  ASSERT_TRUE(document->IsArray());
  ASSERT_EQ(document->Size(), 2U);
  EXPECT_EQ((*document)[0]["Power"].GetDouble(), 1.5);
  EXPECT_TRUE(ReportedTheEncryptedFile());
  EXPECT_FALSE(FileExists(samples_.plain));
  EXPECT_TRUE(FileExists(samples_.encrypted));
}

TEST_F(UseSamplesOfDayTest, ReadsAnEmptyArray) {
  WriteWholeFile(samples_.encrypted, Encrypted(Utf16("[]")));
  const auto document = Read();
  ASSERT_TRUE(document);
  EXPECT_TRUE(document->IsArray());
  EXPECT_TRUE(document->Empty());
  EXPECT_TRUE(ReportedTheEncryptedFile());
  EXPECT_FALSE(FileExists(samples_.plain));
}

TEST_F(UseSamplesOfDayTest, UsesNoCopyForAMissingFile) {
  EXPECT_TRUE(HasNoCopy());
  EXPECT_TRUE(reported_.empty());
}

TEST_F(UseSamplesOfDayTest, UsesNoCopyForAnEmptyFile) {
  WriteWholeFile(samples_.encrypted, "");
  EXPECT_TRUE(HasNoCopy());
  EXPECT_TRUE(ReportedTheEncryptedFile());
  EXPECT_FALSE(FileExists(samples_.plain));
}

TEST_F(UseSamplesOfDayTest, UsesNoCopyForInvalidBase64AndKeepsTheFile) {
  WriteWholeFile(samples_.encrypted, "!!!!");
  EXPECT_TRUE(HasNoCopy());
  EXPECT_TRUE(ReportedTheEncryptedFile());
  EXPECT_FALSE(FileExists(samples_.plain));
  EXPECT_EQ(ReadWholeFile(samples_.encrypted), "!!!!");
}

TEST_F(UseSamplesOfDayTest, TreatsAFolderAsAMissingFile) {
  CreateDirectoryW(samples_.encrypted.c_str(), nullptr);
  CreateDirectoryW(samples_.plain.c_str(), nullptr);
  EXPECT_TRUE(HasNoCopy());
  EXPECT_TRUE(reported_.empty());
  EXPECT_TRUE(FileExists(samples_.encrypted));
  EXPECT_TRUE(FileExists(samples_.plain));
}

TEST_F(UseSamplesOfDayTest, TreatsALinkAsAMissingFile) {
  WriteWholeFile(samples_.encrypted, Encrypted(Utf16("[1]")));
  const FakeReparsePoint fake(samples_.encrypted, IO_REPARSE_TAG_SYMLINK);
  EXPECT_TRUE(HasNoCopy());
  EXPECT_TRUE(reported_.empty());
  EXPECT_FALSE(FileExists(samples_.plain));
}

TEST_F(UseSamplesOfDayTest, NeitherReadsNorDeletesNorWritesACopyThatIsALink) {
  WriteWholeFile(samples_.encrypted, Encrypted(Utf16("[1]")));
  WriteWholeFile(samples_.plain, "[2]");
  {
    const FakeReparsePoint fake(samples_.plain, IO_REPARSE_TAG_SYMLINK);
    EXPECT_TRUE(HasNoCopy());
  }
  EXPECT_TRUE(ReportedTheEncryptedFile());
  EXPECT_EQ(ReadWholeFile(samples_.plain), "[2]");
}

TEST_F(UseSamplesOfDayTest, DeletesACopyThatDoesNotParse) {
  for (const char* text : {"", "no JSON", "[{\"Power\":1},", "[1"}) {
    WriteWholeFile(samples_.plain, text);
    EXPECT_FALSE(Read()) << text;
    EXPECT_FALSE(FileExists(samples_.plain)) << text;
  }
}

TEST_F(UseSamplesOfDayTest, DeletesTheCopyOfEncryptedTextThatIsNotJson) {
  WriteWholeFile(samples_.encrypted, Encrypted(Utf16("[{\"Power\":")));
  EXPECT_FALSE(Read());
  EXPECT_FALSE(FileExists(samples_.plain));
  WriteWholeFile(samples_.encrypted, Encrypted("[{\"Power\":1}]"));  // one byte a character
  EXPECT_FALSE(Read());
  EXPECT_FALSE(FileExists(samples_.plain));
}

TEST_F(UseSamplesOfDayTest, ReadsALeftoverCopyWithoutAnEncryptedFile) {
  WriteWholeFile(samples_.plain, "[7]");
  const auto document = Read();
  ASSERT_TRUE(document);
  EXPECT_EQ((*document)[0].GetInt(), 7);
  EXPECT_TRUE(reported_.empty());
  EXPECT_FALSE(FileExists(samples_.plain));
}

TEST_F(UseSamplesOfDayTest, ReadsALeftoverCopyWhenDecryptionFails) {
  WriteWholeFile(samples_.plain, "[7]");
  WriteWholeFile(samples_.encrypted, "!!!!");
  const auto document = Read();
  ASSERT_TRUE(document);
  EXPECT_EQ((*document)[0].GetInt(), 7);
  EXPECT_TRUE(ReportedTheEncryptedFile());
  EXPECT_FALSE(FileExists(samples_.plain));
}

TEST_F(UseSamplesOfDayTest, ReadsACopyThatCanNeitherBeWrittenNorDeleted) {
  WriteWholeFile(samples_.plain, "[7]");
  WriteWholeFile(samples_.encrypted, Encrypted(Utf16("[1]")));
  {
    // Faked, since some systems let an administrator write and delete a read-only file.
    const Standin::ImportPatch deletion("_wunlink", &FailToDelete);
    const Standin::ImportPatch opening("_wfopen_s", &OpenForReadingOnly);
    g_open = opening.Original<decltype(OpenForReadingOnly)>();
    const auto document = Read();
    ASSERT_TRUE(document);
    EXPECT_EQ((*document)[0].GetInt(), 7);
  }
  EXPECT_TRUE(FileExists(samples_.plain));
  const auto next = Read();
  ASSERT_TRUE(next);
  EXPECT_EQ((*next)[0].GetInt(), 1);
  EXPECT_FALSE(FileExists(samples_.plain));
}

TEST_F(UseSamplesOfDayTest, HasNoCopyIfNothingIsDecrypted) {
  WriteWholeFile(samples_.encrypted, Encrypted(Utf16("[1]")));
  const auto noDecryption = [](const std::wstring&) {};
  const auto use = [](const std::wstring&) { ADD_FAILURE() << "used"; };
  EXPECT_FALSE(UseSamplesOfDay(samples_.folder.Path(), samples_.day, noDecryption, use));
  EXPECT_FALSE(FileExists(samples_.plain));
}

TEST_F(UseSamplesOfDayTest, ReadsADocumentThatIsNotAnArray) {
  WriteWholeFile(samples_.encrypted, Encrypted(Utf16("{\"Power\":1}")));
  const auto document = Read();
  ASSERT_TRUE(document);
  EXPECT_TRUE(document->IsObject());
}

TEST_F(UseSamplesOfDayTest, DeletesACopyOfMegabytesOfOpeningBrackets) {
  WriteWholeFile(samples_.plain, std::string(64U << 20, '['));
  EXPECT_FALSE(Read());
  EXPECT_FALSE(FileExists(samples_.plain));
  WriteWholeFile(samples_.encrypted, Encrypted(Utf16(std::string(1U << 20, '['))));
  EXPECT_FALSE(Read());
  EXPECT_FALSE(FileExists(samples_.plain));
}

TEST_F(UseSamplesOfDayTest, DeletesTheCopyAfterAnExceptionOfItsUse) {
  WriteWholeFile(samples_.encrypted, Encrypted(Utf16("[1]")));
  EXPECT_THROW(static_cast<void>(Use([](const std::wstring&) { throw std::bad_alloc(); })),
               std::bad_alloc);
  EXPECT_FALSE(FileExists(samples_.plain));
}

TEST_F(UseSamplesOfDayTest, PropagatesTheExceptionOfAFailedStatusQuery) {
  WriteWholeFile(samples_.encrypted, Encrypted(Utf16("[]")));
  const FailingStatus failure;
  EXPECT_THROW(Read(), std::filesystem::filesystem_error);
  EXPECT_TRUE(reported_.empty());
}

// A hard link looks like the file itself, so the file is read and written through it.
TEST_F(UseSamplesOfDayTest, ReadsASampleFileThatIsAHardLink) {
  const std::wstring other = samples_.folder.File(L"other.txt");
  WriteWholeFile(other, Encrypted(Utf16("[5]")));
  ASSERT_TRUE(CreateHardLinkW(samples_.encrypted.c_str(), other.c_str(), nullptr));
  const auto document = Read();
  ASSERT_TRUE(document);
  EXPECT_EQ((*document)[0].GetInt(), 5);
}

TEST_F(UseSamplesOfDayTest, WritesThroughAHardLinkedCopyAndDeletesOnlyItsName) {
  const std::wstring other = samples_.folder.File(L"other.txt");
  WriteWholeFile(other, "another program's file");
  ASSERT_TRUE(CreateHardLinkW(samples_.plain.c_str(), other.c_str(), nullptr));
  WriteWholeFile(samples_.encrypted, Encrypted(Utf16("[5]")));
  const auto document = Read();
  ASSERT_TRUE(document);
  EXPECT_EQ((*document)[0].GetInt(), 5);
  EXPECT_FALSE(FileExists(samples_.plain));
  EXPECT_EQ(ReadWholeFile(other).substr(0, 3), "[5]");
}
