// Plain copies that an earlier, interrupted pass left in the data folder.

#include <windows.h>

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/failing_status.h"
#include "base/fake_attributes.h"
#include "ledger/encrypted_samples.h"
#include "ledger/sample_folder.h"
#include "ledger/sample_reader.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::Encrypted;
using TestSupport::FailingStatus;
using TestSupport::FakeReparsePoint;
using TestSupport::FileExists;
using TestSupport::ReadWholeFile;
using TestSupport::Utf16;
using TestSupport::WriteWholeFile;

namespace {

class LeftoverCopies : public testing::Test {
 protected:
  const TestSupport::SampleFolder samples_{};
};

using UseLeftoverCopyOfDayTest = LeftoverCopies;
using RemoveLeftoverCopiesTest = LeftoverCopies;

}  // namespace

TEST_F(UseLeftoverCopyOfDayTest, UsesOnlyALeftoverCopy) {
  WriteWholeFile(samples_.encrypted, Encrypted(Utf16("[1]")));
  std::vector<std::string> contents;
  const auto use = [this, &contents] {
    return UseLeftoverCopyOfDay(
        samples_.folder.Path(), samples_.day,
        [&](const std::wstring& path) { contents.push_back(ReadWholeFile(path)); });
  };
  EXPECT_FALSE(use());
  WriteWholeFile(samples_.plain, "[7]");
  EXPECT_TRUE(use());
  EXPECT_EQ(contents, std::vector<std::string>{"[7]"});
  EXPECT_FALSE(FileExists(samples_.plain));
  EXPECT_TRUE(FileExists(samples_.encrypted));
}

TEST_F(UseLeftoverCopyOfDayTest, DoesNotQueryTheEncryptedFile) {
  WriteWholeFile(samples_.encrypted, Encrypted(Utf16("[1]")));
  // The status of the encrypted file cannot be read. That of the copy is not queried, since the
  // copy does not exist.
  const FailingStatus failure;
  EXPECT_FALSE(UseLeftoverCopyOfDay(samples_.folder.Path(), samples_.day,
                                    [](const std::wstring&) { ADD_FAILURE() << "used"; }));
}

TEST_F(RemoveLeftoverCopiesTest, RemovesTheCopiesOfAllDays) {
  const std::wstring other = samples_.folder.File(L"unencrypt-PcmSampleData_1999-12-31.json");
  WriteWholeFile(samples_.plain, "[7]");
  WriteWholeFile(other, "");
  RemoveLeftoverCopies(samples_.folder.Path());
  EXPECT_FALSE(FileExists(samples_.plain));
  EXPECT_FALSE(FileExists(other));
  RemoveLeftoverCopies(samples_.folder.Path());
  RemoveLeftoverCopies(samples_.folder.File(L"missing"));
}

TEST_F(RemoveLeftoverCopiesTest, KeepsAllOtherFiles) {
  const std::vector<std::wstring> names{L"PcmSampleData_2024-03-01.json",
                                        L"PowerConsumption.json",
                                        L"Powerlog.json",
                                        L"unencrypt-PcmSampleData_2024-03-01.json.bak",
                                        L"unencrypt-PcmSampleData_2024-03-012.json",
                                        L"unencrypt-PcmSampleData.json",
                                        L"an unencrypt-PcmSampleData_2024-03-01.json"};
  for (const std::wstring& name : names) WriteWholeFile(samples_.folder.File(name), "x");
  RemoveLeftoverCopies(samples_.folder.Path());
  for (const std::wstring& name : names) EXPECT_TRUE(FileExists(samples_.folder.File(name)));
}

TEST_F(RemoveLeftoverCopiesTest, KeepsFoldersAndLinks) {
  const std::wstring asFolder = samples_.folder.File(L"unencrypt-PcmSampleData_2024-03-02.json");
  const std::wstring after = samples_.folder.File(L"unencrypt-PcmSampleData_2024-03-03.json");
  WriteWholeFile(samples_.plain, "[7]");
  CreateDirectoryW(asFolder.c_str(), nullptr);
  WriteWholeFile(after, "[7]");
  {
    const FakeReparsePoint fake(samples_.plain, IO_REPARSE_TAG_SYMLINK);
    RemoveLeftoverCopies(samples_.folder.Path());
  }
  EXPECT_TRUE(FileExists(samples_.plain));
  EXPECT_TRUE(FileExists(asFolder));
  EXPECT_FALSE(FileExists(after));
}

TEST_F(RemoveLeftoverCopiesTest, KeepsACopyWhoseStatusCannotBeRead) {
  WriteWholeFile(samples_.plain, "[7]");
  const FailingStatus failure;
  RemoveLeftoverCopies(samples_.folder.Path());
  EXPECT_TRUE(FileExists(samples_.plain));
}
