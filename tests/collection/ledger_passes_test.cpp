#include <windows.h>

#include <errno.h>
#include <stdio.h>
#include <time.h>

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/local_calendar.h"
#include "collection/ledger_fixture.h"
#include "ledger/fake_days.h"
#include "support/call_record.h"

// The ledger through several passes and processes, and what a pass discards, saves and deletes, in
// this order.

using namespace TestSupport;

namespace {

constexpr char kToday[] = "2024-05-08";

// 240 seconds at 36 watts are 2.4 watt-hours, 300 seconds are 3.
constexpr float kThreeAndLinkWh = (3.0F + 2.4F) / 0.88F;

class LedgerPasses : public LedgerFixture {
 protected:
  void Run() { helper.CalculateDailyPowerConsumption(); }

  void RunOn(const std::string& localTime) {
    FakeClock::Set(localTime);
    Run();
  }

  bool HasSamples(const std::string& date) const { return FileExists(SamplePath(date)); }

  /// A day whose samples reach from two minutes after midnight to two minutes before it, with one
  /// interval of 300 seconds at noon.
  void WriteFromMidnightToMidnight(const std::string& date) const {
    WriteSamples(date, {"00:02:00", "12:00:00", "12:05:00", "23:58:00"});
  }

  void WriteLedger(const std::vector<std::string>& elements) const {
    WriteWholeFile(LedgerPath(), List(elements));
  }

  bool FileHolds(const std::string& date, const std::string& value) const {
    return LedgerText().find(LedgerElement(date, value)) != std::string::npos;
  }

  std::vector<std::wstring> Decrypted() const {
    const std::wstring start = L"Decrypting file :" + folder.Path() + L"\\PcmSampleData_";
    std::vector<std::wstring> dates;
    for (const LogRecord& record : log.Records()) {
      if (record.text.starts_with(start)) dates.push_back(record.text.substr(start.size(), 10));
    }
    return dates;
  }
};

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

  /// The ledger file at the first deletion.
  const std::string& LedgerThen() const { return ledgerThen_; }

 private:
  void AddDeletion(const std::wstring& path) {
    if (path.find(L"\\PcmSampleData_") == std::wstring::npos) return;
    if (ledgerThen_.empty()) ledgerThen_ = ReadWholeFile(ledgerPath_);
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
  std::string ledgerThen_;
  const Standin::ImportPatch unlink_{"_wunlink", &Unlink};
  const Standin::ImportPatch open_{"_wfopen_s", &Open};
};

/// Nothing that is written to one file reaches it.
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

int KeepPlainCopies(const wchar_t* path) {
  if (std::wstring(path).find(L"unencrypt-") == std::wstring::npos) return g_realUnlink(path);
  errno = EACCES;
  return -1;
}

__time64_t g_standingTime = 0;

__time64_t StandStill(struct tm*) { return g_standingTime; }

}  // namespace

TEST_F(LedgerPasses, SamplesAreDeletedFromTheNewestToTheOldestAfterTheLedgerIsSaved) {
  for (const char* date : {"2024-05-03", "2024-05-04", "2024-02-01", "2024-05-07"}) {
    WriteOneInterval(date);
  }
  CallRecord record;
  const RecordedFiles files(record, LedgerPath());
  Run();
  EXPECT_EQ(record.Lines(), (std::vector<std::string>{"save", "delete 2024-05-04",
                                                      "delete 2024-05-03", "delete 2024-02-01"}));
  EXPECT_EQ(files.LedgerThen(), LedgerText());
}

TEST_F(LedgerPasses, PassThatMayNotSaveLogsItsErrorAtTheEndAndTouchesNoFile) {
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

TEST_F(LedgerPasses, FailedSaveKeepsTheSamplesOfBookedDays) {
  WriteOneInterval("2024-05-03");
  CreateDirectoryW(LedgerPath().c_str(), nullptr);
  Run();
  EXPECT_EQ(Booked("2024-05-03"), kThreeWh);
  EXPECT_TRUE(HasSamples("2024-05-03"));
  RemoveDirectoryW(LedgerPath().c_str());
}

TEST_F(LedgerPasses, DayThatTheFilePutsBackToZeroAfterAFailedSaveIsWorkedOutFromItsSamples) {
  WriteOneInterval("2024-05-03");
  WriteLedger({LedgerElement("2024-05-03", "0.0")});
  {
    const TestSupport::FakeAttributesFailure failure(LedgerPath(), ERROR_SHARING_VIOLATION);
    Run();
  }
  EXPECT_TRUE(HasSamples("2024-05-03"));
  Run();
  EXPECT_EQ(Booked("2024-05-03"), kThreeWh);
  EXPECT_TRUE(FileHolds("2024-05-03", "3.409090995788574"));
  EXPECT_FALSE(HasSamples("2024-05-03"));
}

TEST_F(LedgerPasses, DayBookedInAFailedSaveIsBookedByTheNextProcess) {
  WriteOneInterval("2024-05-03");
  CreateDirectoryW(LedgerPath().c_str(), nullptr);
  Run();
  RemoveDirectoryW(LedgerPath().c_str());
  TestHelper next(folder.Path().c_str());
  next.CalculateDailyPowerConsumption();
  EXPECT_TRUE(FileHolds("2024-05-03", "3.409090995788574"));
  EXPECT_FALSE(HasSamples("2024-05-03"));
}

TEST_F(LedgerPasses, LedgerThatIsCutByAFullDiskKeepsTheSamplesAndLogsNothing) {
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

TEST_F(LedgerPasses, DiscardedDayCountsAsGoneForTheDayBeforeIt) {
  WriteFromMidnightToMidnight("2024-05-02");
  WriteFromMidnightToMidnight("2024-05-03");
  WriteFromMidnightToMidnight("2024-05-04");
  Run();
  // Each has its link to the day before, none to the day after.
  EXPECT_EQ(Booked("2024-05-04"), kThreeAndLinkWh);
  EXPECT_EQ(Booked("2024-05-03"), kThreeAndLinkWh);
  EXPECT_EQ(Booked("2024-05-02"), kThreeWh);
  EXPECT_EQ(Decrypted(), (std::vector<std::wstring>{L"2024-05-04", L"2024-05-03", L"2024-05-03",
                                                    L"2024-05-02", L"2024-05-02"}));
}

TEST_F(LedgerPasses, DayThatKeepsItsSamplesIsLinkedToTheDayBeforeIt) {
  WriteFromMidnightToMidnight("2024-05-06");
  WriteFromMidnightToMidnight("2024-05-07");
  Run();
  EXPECT_EQ(Booked("2024-05-07"), kThreeAndLinkWh);
  EXPECT_EQ(Booked("2024-05-06"), kThreeAndLinkWh);
}

TEST_F(LedgerPasses, DiscardedDayIsStillReadFromACopyThatCannotBeDeleted) {
  WriteFromMidnightToMidnight("2024-05-03");
  WriteFromMidnightToMidnight("2024-05-04");
  {
    const Standin::ImportPatch unlink("_wunlink", &KeepPlainCopies);
    g_realUnlink = unlink.Original<int(const wchar_t*)>();
    Run();
  }
  // The link to the 4th comes from its copy, which is not decrypted once more.
  EXPECT_EQ(Booked("2024-05-03"), kThreeAndLinkWh);
  EXPECT_EQ(Decrypted(), (std::vector<std::wstring>{L"2024-05-04", L"2024-05-03", L"2024-05-03"}));
}

TEST_F(LedgerPasses, DiscardedDayIsReadAgainAfterThePass) {
  WriteFromMidnightToMidnight("2024-05-03");
  CreateDirectoryW(LedgerPath().c_str(), nullptr);
  Run();
  EXPECT_FALSE(helper.GetPowerConsumption(Day("2024-05-03")).empty());
  RemoveDirectoryW(LedgerPath().c_str());
}

TEST_F(LedgerPasses, CopyOfABookedDayIsDeletedWithoutBeingRead) {
  WriteLedger({LedgerElement("2024-03-01", "12.5")});
  WriteWholeFile(PlainCopy("2024-03-01"), List({Sample("2024-03-01T10:00:00")}));
  Run();
  EXPECT_FALSE(FileExists(PlainCopy("2024-03-01")));
  EXPECT_EQ(Booked("2024-03-01"), 12.5F);
}

TEST_F(LedgerPasses, CopyOfADayWithoutSamplesIsBookedBeforeItIsDeleted) {
  WriteWholeFile(PlainCopy("2024-03-01"),
                 List({Sample("2024-03-01T09:00:00"), Sample("2024-03-01T10:00:00"),
                       Sample("2024-03-01T10:05:00")}));
  Run();
  EXPECT_EQ(Booked("2024-03-01"), kThreeWh);
  EXPECT_FALSE(FileExists(PlainCopy("2024-03-01")));
}

TEST_F(LedgerPasses, CopiesOfDaysThatNoWalkReachesAreDeleted) {
  WriteWholeFile(PlainCopy("2023-10-01"), "[]");
  WriteWholeFile(PlainCopy("2024-06-01"), "[]");
  Run();
  EXPECT_FALSE(FileExists(PlainCopy("2023-10-01")));
  EXPECT_FALSE(FileExists(PlainCopy("2024-06-01")));
}

TEST_F(LedgerPasses, CopiesAreDeletedAlsoWhenTheSaveFails) {
  WriteWholeFile(PlainCopy("2023-10-01"), "[]");
  CreateDirectoryW(LedgerPath().c_str(), nullptr);
  Run();
  EXPECT_FALSE(FileExists(PlainCopy("2023-10-01")));
  RemoveDirectoryW(LedgerPath().c_str());
}

TEST_F(LedgerPasses, NegativeDayIsBookedAndFinal) {
  const std::string date = "2024-05-03";
  WriteEncrypted(date, List({Sample(date + "T09:00:00"), Sample(date + "T10:00:00", "-36"),
                             Sample(date + "T10:05:00")}));
  Run();
  EXPECT_EQ(Booked(date), -kThreeWh);
  EXPECT_FALSE(HasSamples(date));
  EXPECT_TRUE(FileHolds(date, "-3.409090995788574"));
  WriteOneInterval(date);
  Run();
  EXPECT_EQ(Booked(date), -kThreeWh);
}

TEST_F(LedgerPasses, LedgerInMemoryStandsWhenTheFileIsGoneOrNoArray) {
  WriteLedger({LedgerElement("2024-03-01", "12.5")});
  Run();
  DeleteFileW(LedgerPath().c_str());
  Run();
  EXPECT_EQ(Booked("2024-03-01"), 12.5F);
  for (const char* content : {"", "[{", "{}", "no json"}) {
    SCOPED_TRACE(content);
    WriteWholeFile(LedgerPath(), content);
    Run();
    EXPECT_EQ(Booked("2024-03-01"), 12.5F);
    EXPECT_TRUE(FileHolds("2024-03-01", "12.5"));
  }
}

TEST_F(LedgerPasses, FileIsReadAtEveryPassAndWinsOverMemory) {
  WriteLedger({LedgerElement("2024-03-01", "12.5")});
  Run();
  WriteLedger({LedgerElement("2024-03-01", "7.25"), LedgerElement("2024-03-02", "1.5")});
  Run();
  EXPECT_EQ(Booked("2024-03-01"), 7.25F);
  EXPECT_EQ(Booked("2024-03-02"), 1.5F);
  EXPECT_TRUE(FileHolds("2024-03-01", "7.25"));
}

TEST_F(LedgerPasses, ThreeDaysOfOneProcess) {
  WriteOneInterval("2024-05-05");
  WriteOneInterval("2024-05-07");
  WriteSamples(kToday, {"09:00:00", "10:00:00", "10:05:00"});
  RunOn("2024-05-08 14:30:00");
  EXPECT_EQ(Booked("2024-05-05"), kThreeWh);
  EXPECT_EQ(Booked(kToday), kThreeWh);

  // What was used after that pass is not booked later, and the samples of both days stay.
  WriteSamples(kToday, {"09:00:00", "10:00:00", "10:05:00", "23:58:00"});
  WriteSamples("2024-05-09", {"00:02:00", "12:00:00", "12:05:00"});
  RunOn("2024-05-09 14:30:01");
  EXPECT_EQ(Booked(kToday), kThreeWh);
  EXPECT_EQ(Booked("2024-05-09"), kThreeAndLinkWh);
  EXPECT_TRUE(HasSamples("2024-05-07"));

  // A day off, then a day that had no samples when it was today.
  RunOn("2024-05-11 14:30:02");
  EXPECT_EQ(Booked("2024-05-10"), 0.0F);
  WriteOneInterval("2024-05-10");
  RunOn("2024-05-12 14:30:03");
  EXPECT_EQ(Booked("2024-05-10"), kThreeWh);
  EXPECT_FALSE(HasSamples("2024-05-10"));
  for (const char* date : {"2024-05-07", kToday, "2024-05-09"}) {
    EXPECT_TRUE(HasSamples(date)) << date;
  }
}

TEST_F(LedgerPasses, RestartTakesTheLedgerFromTheFileAtItsFirstPass) {
  WriteOneInterval("2024-05-05");
  WriteOneInterval(kToday);
  Run();
  WriteSamples(kToday, {"09:00:00", "10:00:00", "10:05:00", "10:10:00"});

  FakeClock::Set("2024-05-09 08:00:00");
  TestHelper next(folder.Path().c_str());
  EXPECT_EQ(next.GetDailyAveragePowerConsumption(), 0.0F);
  next.CalculateDailyPowerConsumption();
  // The 5th, whose samples are gone, and the 8th, which is final.
  EXPECT_EQ(next.GetDailyAveragePowerConsumption(), (kThreeWh + kThreeWh) / 7.0F);
  EXPECT_EQ(next.dailyLedger.at(Day(kToday)), kThreeWh);
  EXPECT_TRUE(HasSamples(kToday));
}

TEST_F(LedgerPasses, RestartOnTheSameDayWorksOutTodayAgain) {
  WriteOneInterval(kToday);
  Run();
  WriteSamples(kToday, {"09:00:00", "10:00:00", "10:05:00", "10:10:00"});
  TestHelper next(folder.Path().c_str());
  next.CalculateDailyPowerConsumption();
  EXPECT_EQ(next.dailyLedger.at(Day(kToday)), 6.0F / 0.88F);
}

TEST_F(LedgerPasses, ClockPutBackKeepsTheSamplesOfTomorrow) {
  WriteOneInterval(kToday);
  WriteOneInterval("2024-05-07");
  Run();
  // Tomorrow is booked already, and today is worked out although it is.
  WriteSamples("2024-05-07", {"09:00:00", "10:00:00", "10:05:00", "10:10:00"});
  RunOn("2024-05-07 14:30:00");
  EXPECT_EQ(Booked("2024-05-07"), 6.0F / 0.88F);
  EXPECT_EQ(Booked(kToday), kThreeWh);
  EXPECT_TRUE(HasSamples(kToday));
  EXPECT_TRUE(FileHolds(kToday, "3.409090995788574"));
}

TEST_F(LedgerPasses, OldestDayIsWorkedOutAgainAtTheNextPassAndLosesItsValueWithItsSamples) {
  WriteOneInterval("2023-10-11");
  Run();
  EXPECT_EQ(Booked("2023-10-11"), kThreeWh);
  TestHelper next(folder.Path().c_str());
  next.CalculateDailyPowerConsumption();
  EXPECT_EQ(next.dailyLedger.at(Day("2023-10-11")), 0.0F);
}

// 211 steps: today, which has no samples, and 210 times the day before it, whose file is read
// twice, since the day before that day is again the same one.
TEST_F(LedgerPasses, CalendarThatStandsStillEndsThePassAfter211Steps) {
  WriteOneInterval("2024-05-07");
  g_standingTime = Zq::Gantry::Server::Services::Wattleaf::InstantOf(Day(kToday));
  {
    const Standin::ImportPatch patch("_mktime64", &StandStill);
    Run();
  }
  EXPECT_EQ(helper.dailyLedger.size(), 1U);
  EXPECT_EQ(Decrypted().size(), 420U);
}
