#include <windows.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "base/date_time_text.h"
#include "ledger/encrypted_samples.h"
#include "ledger/sample_reader.h"
#include "support/temp_folder.h"

// A second name of a file is no link that could be recognised: the file is read and written by it.

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace TestSupport;

namespace {

class HardLinks : public testing::Test {
 protected:
  /// Gives the file of the other name `name` too.
  void Link(const std::wstring& name) {
    ASSERT_TRUE(CreateHardLinkW(name.c_str(), other_.c_str(), nullptr));
  }

  std::unique_ptr<GenericDocument> Read() {
    return std::unique_ptr<GenericDocument>(
        ReadSamplesOfDay(folder_.Path(), LocalTime(2024, 3, 1), [](const std::wstring&) {}));
  }

  const TempFolder folder_;
  const std::wstring other_ = folder_.File(L"other.txt");
  const std::wstring encrypted_ = folder_.File(L"PcmSampleData_2024-03-01.json");
  const std::wstring plain_ = folder_.File(L"unencrypt-PcmSampleData_2024-03-01.json");
};

}  // namespace

TEST_F(HardLinks, ASampleFileThatIsOneIsReadLikeAnyOther) {
  WriteWholeFile(other_, Encrypted(Utf16("[5]")));
  Link(encrypted_);
  const auto samples = Read();
  ASSERT_TRUE(samples);
  EXPECT_EQ((*samples)[0].GetInt(), 5);
}

TEST_F(HardLinks, APlainCopyThatIsOneIsWrittenThroughAndOnlyItsNameIsDeleted) {
  WriteWholeFile(other_, "somebody's file");
  Link(plain_);
  WriteWholeFile(encrypted_, Encrypted(Utf16("[5]")));
  const auto samples = Read();
  ASSERT_TRUE(samples);
  EXPECT_EQ((*samples)[0].GetInt(), 5);
  EXPECT_FALSE(FileExists(plain_));
  EXPECT_EQ(ReadWholeFile(other_).substr(0, 3), "[5]");
}
