// What a pass does with samples and plain copies: which it reads, discards and deletes, and when.

#include <windows.h>

#include <errno.h>
#include <stdio.h>
#include <time.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/local_calendar.h"
#include "collection/ledger_fixture.h"
#include "import_patch.h"
#include "ledger/fake_days.h"
#include "support/call_record.h"

using namespace TestSupport;

namespace {

using CalculateDailyPowerConsumption = DailyPassFixture;

/// Records each deletion of samples and each opening of the ledger for writing.
class RecordedFiles {
 public:
  RecordedFiles(CallRecord& record, const std::wstring& ledgerPath)
      : record_(record), ledgerPath_(ledgerPath) {
    g_current = this;
    g_unlink = unlink_.Original<int(const wchar_t*)>();
    g_open = open_.Original<errno_t(FILE**, const wchar_t*, const wchar_t*)>();
  }
  RecordedFiles(const RecordedFiles&) = delete;
  RecordedFiles& operator=(const RecordedFiles&) = delete;
  ~RecordedFiles() { g_current = nullptr; }

  /// The content of the ledger file at the first deletion.
  const std::string& LedgerAtFirstDeletion() const { return ledgerAtFirstDeletion_; }

 private:
  void AddDeletion(const std::wstring& path) {
    if (path.find(L"\\PcmSampleData_") == std::wstring::npos) return;
    if (ledgerAtFirstDeletion_.empty()) ledgerAtFirstDeletion_ = ReadWholeFile(ledgerPath_);
    const std::wstring date = path.substr(path.size() - 15, 10);
    record_.Add("delete " + std::string(date.begin(), date.end()));
  }

  static int Unlink(const wchar_t* path) {
    g_current->AddDeletion(path);
    return g_unlink(path);
  }

  static errno_t Open(FILE** file, const wchar_t* path, const wchar_t* mode) {
    if (g_current->ledgerPath_ == path && *mode == L'w') g_current->record_.Add("save");
    return g_open(file, path, mode);
  }

  static inline RecordedFiles* g_current = nullptr;
  static inline int (*g_unlink)(const wchar_t*) = nullptr;
  static inline errno_t (*g_open)(FILE**, const wchar_t*, const wchar_t*) = nullptr;
  CallRecord& record_;
  const std::wstring ledgerPath_;
  std::string ledgerAtFirstDeletion_;
  const Standin::ImportPatch unlink_{"_wunlink", &Unlink};
  const Standin::ImportPatch open_{"_wfopen_s", &Open};
};

/// Makes every write to one file fail, as on a full disk. One at a time.
class FakeFullDisk {
 public:
  explicit FakeFullDisk(const std::wstring& path) {
    g_path = path;
    g_file = nullptr;
    g_open = open_.Original<errno_t(FILE**, const wchar_t*, const wchar_t*)>();
    g_write = write_.Original<std::size_t(const void*, std::size_t, std::size_t, FILE*)>();
  }

 private:
  static errno_t Open(FILE** file, const wchar_t* path, const wchar_t* mode) {
    const errno_t error = g_open(file, path, mode);
    if (g_path == path && *mode == L'w') g_file = *file;
    return error;
  }

  static std::size_t Write(const void* data, std::size_t size, std::size_t count, FILE* file) {
    return file == g_file ? 0 : g_write(data, size, count, file);
  }

  static inline std::wstring g_path;
  static inline FILE* g_file = nullptr;
  static inline errno_t (*g_open)(FILE**, const wchar_t*, const wchar_t*) = nullptr;
  static inline std::size_t (*g_write)(const void*, std::size_t, std::size_t, FILE*) = nullptr;
  const Standin::ImportPatch open_{"_wfopen_s", &Open};
  const Standin::ImportPatch write_{"fwrite", &Write};
};

int (*g_realUnlink)(const wchar_t*) = nullptr;

/// Refuses to delete plain copies.
int KeepPlainCopies(const wchar_t* path) {
  if (std::wstring(path).find(L"unencrypt-") == std::wstring::npos) return g_realUnlink(path);
  errno = EACCES;
  return -1;
}

__time64_t g_standingTime = 0;

__time64_t StandStill(struct tm*) { return g_standingTime; }

}  // namespace

TEST_F(CalculateDailyPowerConsumption, DeletesSamplesNewestFirstAfterSavingTheLedger) {
  for (const char* date : {"2024-05-03", "2024-05-04", "2024-02-01", "2024-05-07"}) {
    WriteOneInterval(date);
  }
  CallRecord record;
  const RecordedFiles files(record, LedgerPath());
  Run();
  EXPECT_EQ(record.Lines(), (std::vector<std::string>{"save", "delete 2024-05-04",
                                                      "delete 2024-05-03", "delete 2024-02-01"}));
  EXPECT_EQ(files.LedgerAtFirstDeletion(), LedgerText());
}

TEST_F(CalculateDailyPowerConsumption, LogsTheErrorLastAndChangesNoFileWhenItMayNotSave) {
  WriteWholeFile(SamplePath("2024-05-03"), "!!!!");
  CallRecord record;
  const LogCapture recordedLog(record);
  const RecordedFiles files(record, LedgerPath());
  const FakeAttributesFailure failure(LedgerPath(), ERROR_SHARING_VIOLATION);
  Run();
  const std::wstring path = SamplePath("2024-05-03");
  EXPECT_EQ(record.Lines(),
            (std::vector<std::string>{
                "log info: Date:2024-05-08",
                "log info: Decrypting file :" + std::string(path.begin(), path.end()),
                "log error: Error in CalculateDailyPowerConsumption() : Save Json failed"}));
}

TEST_F(CalculateDailyPowerConsumption, KeepsTheSamplesOfBookedDaysWhenTheSaveFails) {
  WriteOneInterval("2024-05-03");
  CreateDirectoryW(LedgerPath().c_str(), nullptr);
  Run();
  EXPECT_EQ(Booked("2024-05-03"), kThreeWh);
  EXPECT_TRUE(HasSamples("2024-05-03"));
  RemoveDirectoryW(LedgerPath().c_str());
}

TEST_F(CalculateDailyPowerConsumption,
       KeepsTheSamplesAndLogsNothingWhenAFullDiskTruncatesTheLedger) {
  WriteOneInterval("2024-05-03");
  {
    const FakeFullDisk disk(LedgerPath());
    Run();
  }
  EXPECT_EQ(Booked("2024-05-03"), kThreeWh);
  EXPECT_EQ(LedgerText(), "");
  EXPECT_TRUE(HasSamples("2024-05-03"));
  for (const LogRecord& record : log.Records()) EXPECT_EQ(record.level, Standin::LogLevel::kInfo);
}

TEST_F(CalculateDailyPowerConsumption, TreatsADiscardedDayAsMissingForTheDayBeforeIt) {
  WriteFromMidnightToMidnight("2024-05-02");
  WriteFromMidnightToMidnight("2024-05-03");
  WriteFromMidnightToMidnight("2024-05-04");
  Run();
  // Each day is linked to the day before and not to the day after.
  EXPECT_EQ(Booked("2024-05-04"), kThreeAndLinkWh);
  EXPECT_EQ(Booked("2024-05-03"), kThreeAndLinkWh);
  EXPECT_EQ(Booked("2024-05-02"), kThreeWh);
  EXPECT_EQ(DecryptedDates(),
            (std::vector<std::wstring>{L"2024-05-04", L"2024-05-03", L"2024-05-03", L"2024-05-02",
                                       L"2024-05-02"}));
}

TEST_F(CalculateDailyPowerConsumption, LinksADayThatKeepsItsSamplesToTheDayBeforeIt) {
  WriteFromMidnightToMidnight("2024-05-06");
  WriteFromMidnightToMidnight("2024-05-07");
  Run();
  EXPECT_EQ(Booked("2024-05-07"), kThreeAndLinkWh);
  EXPECT_EQ(Booked("2024-05-06"), kThreeAndLinkWh);
}

TEST_F(CalculateDailyPowerConsumption, ReadsADiscardedDayFromACopyThatCannotBeDeleted) {
  WriteFromMidnightToMidnight("2024-05-03");
  WriteFromMidnightToMidnight("2024-05-04");
  {
    const Standin::ImportPatch unlink("_wunlink", &KeepPlainCopies);
    g_realUnlink = unlink.Original<int(const wchar_t*)>();
    Run();
  }
  // The link to the 4th comes from its plain copy; the 4th is not decrypted again.
  EXPECT_EQ(Booked("2024-05-03"), kThreeAndLinkWh);
  EXPECT_EQ(DecryptedDates(),
            (std::vector<std::wstring>{L"2024-05-04", L"2024-05-03", L"2024-05-03"}));
}

TEST_F(CalculateDailyPowerConsumption, AllowsReadingADiscardedDayAfterThePass) {
  WriteFromMidnightToMidnight("2024-05-03");
  CreateDirectoryW(LedgerPath().c_str(), nullptr);
  Run();
  EXPECT_FALSE(helper.GetPowerConsumption(Day("2024-05-03")).empty());
  RemoveDirectoryW(LedgerPath().c_str());
}

TEST_F(CalculateDailyPowerConsumption, DeletesThePlainCopyOfABookedDayUnread) {
  WriteLedger({LedgerElement("2024-03-01", "12.5")});
  WriteWholeFile(PlainCopy("2024-03-01"), List({Sample("2024-03-01T10:00:00")}));
  Run();
  EXPECT_FALSE(FileExists(PlainCopy("2024-03-01")));
  EXPECT_EQ(Booked("2024-03-01"), 12.5F);
}

TEST_F(CalculateDailyPowerConsumption, BooksThePlainCopyOfADayWithoutSamplesThenDeletesIt) {
  WriteWholeFile(PlainCopy("2024-03-01"),
                 List({Sample("2024-03-01T09:00:00"), Sample("2024-03-01T10:00:00"),
                       Sample("2024-03-01T10:05:00")}));
  Run();
  EXPECT_EQ(Booked("2024-03-01"), kThreeWh);
  EXPECT_FALSE(FileExists(PlainCopy("2024-03-01")));
}

TEST_F(CalculateDailyPowerConsumption, DeletesPlainCopiesOfDaysOutsideThePass) {
  WriteWholeFile(PlainCopy("2023-10-01"), "[]");
  WriteWholeFile(PlainCopy("2024-06-01"), "[]");
  Run();
  EXPECT_FALSE(FileExists(PlainCopy("2023-10-01")));
  EXPECT_FALSE(FileExists(PlainCopy("2024-06-01")));
}

TEST_F(CalculateDailyPowerConsumption, DeletesPlainCopiesWhenTheSaveFails) {
  WriteWholeFile(PlainCopy("2023-10-01"), "[]");
  CreateDirectoryW(LedgerPath().c_str(), nullptr);
  Run();
  EXPECT_FALSE(FileExists(PlainCopy("2023-10-01")));
  RemoveDirectoryW(LedgerPath().c_str());
}

// 211 steps: today, which has no samples, and 210 times the day before. That day's file is read
// twice at each step, because the day before it is again the same day.
TEST_F(CalculateDailyPowerConsumption, EndsAfter211StepsWhenTheCalendarStandsStill) {
  WriteOneInterval("2024-05-07");
  g_standingTime = Zq::Gantry::Server::Services::Wattleaf::InstantOf(Day(kToday));
  {
    const Standin::ImportPatch patch("_mktime64", &StandStill);
    Run();
  }
  EXPECT_EQ(helper.dailyLedger.size(), 1U);
  EXPECT_EQ(DecryptedDates().size(), 420U);
}
