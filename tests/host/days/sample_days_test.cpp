#include "days/sample_days.h"

#include <windows.h>

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/date_time_text.h"
#include "days/stored_ledger.h"
#include "explain/day_explanation.h"
#include "ledger/encrypted_samples.h"
#include "support/temp_folder.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace WattleafHost;
using TestSupport::Encrypted;
using TestSupport::TempFolder;
using TestSupport::WriteWholeFile;

namespace {

constexpr char kTwoSamples[] =
    R"([{"TelemetryType":"PCM_SENSOR","SampleTime":"2024-03-01T10:00:00","Power":36},)"
    R"({"TelemetryType":"PCM_SENSOR","SampleTime":"2024-03-01T10:05:00","Power":36}])";

/// A data folder with what a test puts there, and the readings of the first of March in its copy.
struct CopiedDay {
  const TempFolder source{};
  const std::wstring encrypted = source.File(L"PcmSampleData_2024-03-01.json");
  const std::wstring plain = source.File(L"unencrypt-PcmSampleData_2024-03-01.json");

  [[nodiscard]] std::vector<SampleFile> ReadTwice(std::size_t expectedSamples) const {
    DataCopy copy(source.Path());
    const DateTime day = TestSupport::LocalTime(2024, 3, 1);
    copy.AddSamplesOf(day);
    SampleDays samples(copy);
    EXPECT_EQ(ExplainHours(day, samples.Reader()).samples.size(), expectedSamples);
    EXPECT_EQ(ExplainHours(day, samples.Reader()).samples.size(), expectedSamples);
    return samples.Files();
  }
};

void ExpectBoth(const std::vector<SampleFile>& files, const std::string& text) {
  ASSERT_EQ(files.size(), 2U);
  for (const SampleFile& file : files) {
    EXPECT_EQ(file.date, "2024-03-01");
    EXPECT_EQ(SampleFileText(file), text);
  }
}

}  // namespace

TEST(SampleDays, ReadsAnEncryptedFileAsOftenAsAsked) {
  const CopiedDay day;
  WriteWholeFile(day.encrypted, Encrypted(TestSupport::Utf16(kTwoSamples)));
  ExpectBoth(day.ReadTwice(2), "2 samples");
}

TEST(SampleDays, NamesAMissingFile) { ExpectBoth(CopiedDay().ReadTwice(0), "no file"); }

TEST(SampleDays, NamesAFileThatCannotBeDecrypted) {
  const CopiedDay day;
  WriteWholeFile(day.encrypted, TestSupport::Base64("no blob of the system"));
  ExpectBoth(day.ReadTwice(0), "cannot be decrypted on this machine");
}

TEST(SampleDays, NamesAFileThatIsNoList) {
  const CopiedDay day;
  WriteWholeFile(day.encrypted, Encrypted(TestSupport::Utf16(R"({"TelemetryType":"PCM_SENSOR"})")));
  ExpectBoth(day.ReadTwice(0), "decrypted, but not a list of samples");
}

TEST(SampleDays, NamesAFolderInThePlaceOfAFile) {
  const CopiedDay day;
  ASSERT_TRUE(CreateDirectoryW(day.encrypted.c_str(), nullptr));
  ExpectBoth(day.ReadTwice(0), "not read: a folder");
}

TEST(SampleDays, ReadsAPlainCopyThatWasLeftIfTheFileCannotBeDecrypted) {
  const CopiedDay day;
  WriteWholeFile(day.encrypted, "no Base64!");
  WriteWholeFile(day.plain, kTwoSamples);
  ExpectBoth(day.ReadTwice(2), "2 samples, from a plain copy that a broken-off pass left");
}

TEST(SampleDays, PrefersTheFileToAPlainCopyThatWasLeft) {
  const CopiedDay day;
  WriteWholeFile(day.encrypted, Encrypted(TestSupport::Utf16("[{}]")));
  WriteWholeFile(day.plain, kTwoSamples);
  ExpectBoth(day.ReadTwice(1), "1 sample");
}

TEST(StoredLedger, HasTheDaysOfTheFileAlsoThoseThatAPassDrops) {
  const TempFolder source;
  WriteWholeFile(source.File(L"PowerConsumption.json"),
                 R"([{"Key":"2001-02-03","Value":1.5},{"Key":"2024-03-01","Value":12.5}])");
  DataCopy copy(source.Path());
  const StoredLedger ledger = ReadStoredLedger(copy);
  EXPECT_EQ(ledger.state, LedgerState::kRead);
  EXPECT_EQ(ledger.Find(TestSupport::LocalTime(2001, 2, 3)), 1.5F);
  EXPECT_EQ(ledger.Find(TestSupport::LocalTime(2024, 3, 1)), 12.5F);
  EXPECT_FALSE(ledger.Find(TestSupport::LocalTime(2024, 3, 2)).has_value());
}

TEST(StoredLedger, NamesAFileThatIsMissingOrCannotBeRead) {
  const TempFolder source;
  const auto stateNow = [&source] {
    DataCopy copy(source.Path());
    return ReadStoredLedger(copy).state;
  };
  EXPECT_EQ(stateNow(), LedgerState::kAbsent);
  WriteWholeFile(source.File(L"PowerConsumption.json"), R"([{"Key":"2024-03-01","Val)");
  EXPECT_EQ(stateNow(), LedgerState::kUnreadable);
  WriteWholeFile(source.File(L"PowerConsumption.json"), R"({"Key":"2024-03-01"})");
  EXPECT_EQ(stateNow(), LedgerState::kUnreadable);
  ASSERT_TRUE(DeleteFileW(source.File(L"PowerConsumption.json").c_str()));
  ASSERT_TRUE(CreateDirectoryW(source.File(L"PowerConsumption.json").c_str(), nullptr));
  EXPECT_EQ(stateNow(), LedgerState::kLeftOut);
}
