// What a pass decrypts: a file that it reads again is decrypted again only if its text has changed.
// The log line and the plain copy belong to each reading.

#include <windows.h>

#include <wincrypt.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "collection/ledger_fixture.h"
#include "import_patch.h"
#include "ledger/encrypted_samples.h"
#include "ledger/fake_days.h"

using namespace TestSupport;

namespace {

using CalculateDailyPowerConsumption = DailyPassFixture;

using Dates = std::vector<std::wstring>;

/// Counts the calls of data protection, and records each deletion of a plain copy.
/// One at a time.
class RecordedReadings {
 public:
  /// `afterReading` is called with the date of each deleted copy.
  explicit RecordedReadings(std::function<void(const std::wstring& date)> afterReading = {})
      : afterReading_(std::move(afterReading)) {
    g_current = this;
    g_unprotect = unprotect_.Original<decltype(CryptUnprotectData)>();
    g_unlink = unlink_.Original<int(const wchar_t*)>();
  }
  RecordedReadings(const RecordedReadings&) = delete;
  RecordedReadings& operator=(const RecordedReadings&) = delete;
  ~RecordedReadings() { g_current = nullptr; }

  /// The dates of the deleted copies.
  Dates dates;
  /// Their contents.
  std::vector<std::string> copies;
  int decryptions = 0;

 private:
  static BOOL WINAPI Unprotect(DATA_BLOB* encrypted, wchar_t** description, DATA_BLOB* entropy,
                               void* reserved, CRYPTPROTECT_PROMPTSTRUCT* prompt, DWORD flags,
                               DATA_BLOB* plain) {
    ++g_current->decryptions;
    return g_unprotect(encrypted, description, entropy, reserved, prompt, flags, plain);
  }

  static int Unlink(const wchar_t* path) {
    const std::wstring text = path;
    if (text.find(L"\\unencrypt-") == std::wstring::npos) return g_unlink(path);
    const std::wstring date = text.substr(text.size() - 15, 10);
    g_current->dates.push_back(date);
    g_current->copies.push_back(ReadWholeFile(text));
    const int result = g_unlink(path);
    if (g_current->afterReading_) g_current->afterReading_(date);
    return result;
  }

  static inline RecordedReadings* g_current = nullptr;
  static inline decltype(CryptUnprotectData)* g_unprotect = nullptr;
  static inline int (*g_unlink)(const wchar_t*) = nullptr;
  const std::function<void(const std::wstring&)> afterReading_;
  const Standin::ImportPatch unprotect_{"CryptUnprotectData", &Unprotect};
  const Standin::ImportPatch unlink_{"_wunlink", &Unlink};
};

/// The samples that WriteFromMidnightToMidnight writes, as the content of the plain copy.
std::string PlainCopyOf(const std::wstring& wideDate) {
  const std::string date(wideDate.begin(), wideDate.end());
  const std::string text = List({Sample(date + "T00:02:00"), Sample(date + "T12:00:00"),
                                 Sample(date + "T12:05:00"), Sample(date + "T23:58:00")});
  return text + std::string(text.size(), '\0');
}

void ExpectCopiesOfTheirDays(const RecordedReadings& readings) {
  for (std::size_t i = 0; i < readings.dates.size(); ++i) {
    EXPECT_EQ(readings.copies[i], PlainCopyOf(readings.dates[i])) << i;
  }
}

}  // namespace

TEST_F(CalculateDailyPowerConsumption, DecryptsEachOfThreeDaysOnceForSevenReadings) {
  for (int back = 0; back < 3; ++back) WriteFromMidnightToMidnight(DateBefore("2024-05-08", back));
  const RecordedReadings readings;
  Run();
  // Each day, the day before it, the day after it.
  const Dates expected{L"2024-05-08", L"2024-05-07", L"2024-05-07", L"2024-05-06",
                       L"2024-05-08", L"2024-05-06", L"2024-05-07"};
  EXPECT_EQ(DecryptedDates(), expected);
  EXPECT_EQ(readings.dates, expected);
  ExpectCopiesOfTheirDays(readings);
  EXPECT_EQ(readings.decryptions, 3);
}

TEST_F(CalculateDailyPowerConsumption, DecryptsEachOfTenDaysOnceForTwentyOneReadings) {
  for (int back = 0; back < 10; ++back) WriteFromMidnightToMidnight(DateBefore("2024-05-08", back));
  const RecordedReadings readings;
  Run();
  // Two readings for today and three for each of the next two; then the day after is discarded, and
  // the last day has no day before it.
  EXPECT_EQ(readings.dates.size(), 2U + 3U + 3U + 6 * 2U + 1U);
  EXPECT_EQ(DecryptedDates(), readings.dates);
  ExpectCopiesOfTheirDays(readings);
  EXPECT_EQ(readings.decryptions, 10);
}

TEST_F(CalculateDailyPowerConsumption, DecryptsAFileAgainThatChangesBetweenTwoReadings) {
  WriteFromMidnightToMidnight("2024-05-08");
  WriteSamples("2024-05-07", {"09:00:00", "10:00:00", "10:05:00"});
  const RecordedReadings readings([&](const std::wstring& date) {
    if (date == L"2024-05-07" && readings.dates.size() == 2) {
      WriteSamples("2024-05-07", {"09:00:00", "10:00:00", "10:10:00"});
    }
  });
  Run();
  EXPECT_EQ(readings.dates, (Dates{L"2024-05-08", L"2024-05-07", L"2024-05-07", L"2024-05-08"}));
  EXPECT_EQ(Booked("2024-05-07"), kWhOf600Seconds);
  EXPECT_EQ(readings.decryptions, 3);
}

TEST_F(CalculateDailyPowerConsumption, TriesAFileAgainThatCouldNotBeDecrypted) {
  WriteFromMidnightToMidnight("2024-05-08");
  WriteWholeFile(SamplePath("2024-05-07"), Base64("something else"));
  WriteFromMidnightToMidnight("2024-05-06");
  const RecordedReadings readings;
  Run();
  EXPECT_EQ(DecryptedDates(),
            (Dates{L"2024-05-08", L"2024-05-07", L"2024-05-07", L"2024-05-06", L"2024-05-07"}));
  EXPECT_EQ(readings.dates, (Dates{L"2024-05-08", L"2024-05-06"}));
  EXPECT_EQ(readings.decryptions, 5);
  EXPECT_EQ(Booked("2024-05-07"), 0.0F);
}

TEST_F(CalculateDailyPowerConsumption, DecryptsTheSameFileAgainInTheNextPass) {
  WriteFromMidnightToMidnight("2024-05-08");
  const RecordedReadings readings;
  Run();
  EXPECT_EQ(readings.decryptions, 1);
  Run();
  EXPECT_EQ(readings.decryptions, 2);
}

TEST_F(CalculateDailyPowerConsumption, LeavesNothingDecryptedForLaterCommands) {
  WriteFromMidnightToMidnight("2024-05-08");
  Run();
  const RecordedReadings readings;
  EXPECT_EQ(helper.GetPowerConsumption(Day("2024-05-08")).size(), 1U);
  EXPECT_EQ(helper.GetPowerConsumption(Day("2024-05-08")).size(), 1U);
  EXPECT_EQ(readings.decryptions, 2);
}
