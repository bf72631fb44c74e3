// The daily pass on real encrypted files: what it books, writes, deletes and logs.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "collection/ledger_fixture.h"
#include "ledger/fake_days.h"

using namespace TestSupport;

namespace {

constexpr char kOldest[] = "2023-10-11";  // 210 days before

using CalculateDailyPowerConsumption = DailyPassFixture;

/// The ledger file after a pass on kToday that booked `energyText` for today and nothing else.
std::string FileWithOnlyToday(const std::string& energyText) {
  std::string text = "[";
  for (int back = 210; back > 0; --back) {
    text += R"({"Key":")" + DateBefore(kToday, back) + R"(","Value":0.0},)";
  }
  return text + R"({"Key":"2024-05-08","Value":)" + energyText + "}]";
}

}  // namespace

TEST_F(CalculateDailyPowerConsumption, LogsTheDateThenEachDecryptedFile) {
  WriteOneInterval(kToday);
  Run();
  EXPECT_EQ(log.Records(), (std::vector<LogRecord>{
                               Info(L"Date:2024-05-08"),
                               Info(L"Decrypting file :" + SamplePath(kToday)),
                           }));
}

TEST_F(CalculateDailyPowerConsumption, LogsOnlyTheDateWithoutSamples) {
  Run();
  EXPECT_EQ(log.Records(), std::vector<LogRecord>{Info(L"Date:2024-05-08")});
  EXPECT_EQ(LedgerText(), FileWithOnlyToday("0.0"));
}

TEST_F(CalculateDailyPowerConsumption, WritesTheLedgerInAscendingOrderWithoutBlanks) {
  WriteOneInterval(kToday);
  Run();
  // 3.0 divided by 0.88 in 32 bits, widened.
  EXPECT_EQ(LedgerText(), FileWithOnlyToday("3.409090995788574"));
}

TEST_F(CalculateDailyPowerConsumption, LeavesNoPlainCopies) {
  WriteOneInterval(kToday);
  WriteOneInterval("2024-05-07");
  WriteOneInterval("2024-05-01");
  Run();
  for (const char* date : {kToday, "2024-05-07", "2024-05-01"}) {
    const std::string name = std::string("unencrypt-PcmSampleData_") + date + ".json";
    EXPECT_FALSE(FileExists(folder.File({name.begin(), name.end()}))) << date;
  }
}

TEST_F(CalculateDailyPowerConsumption, BooksAMissingDayAndDeletesItsSamples) {
  WriteOneInterval("2024-05-05");
  Run();
  EXPECT_EQ(Booked("2024-05-05"), kThreeWh);
  EXPECT_FALSE(HasSamples("2024-05-05"));
}

TEST_F(CalculateDailyPowerConsumption, DoesNotRecalculateABookedDayAndKeepsItsSamples) {
  WriteOneInterval("2024-05-05");
  WriteWholeFile(LedgerPath(), R"([{"Key":"2024-05-05","Value":12.5}])");
  Run();
  EXPECT_EQ(Booked("2024-05-05"), 12.5F);
  EXPECT_TRUE(HasSamples("2024-05-05"));
}

TEST_F(CalculateDailyPowerConsumption, KeepsTheSavedValueOfADayWithoutSamples) {
  WriteWholeFile(LedgerPath(), R"([{"Key":"2024-03-01","Value":12.5}])");
  Run();
  EXPECT_EQ(Booked("2024-03-01"), 12.5F);
}

TEST_F(CalculateDailyPowerConsumption, BooksTodayAndYesterdayAndKeepsTheirSamples) {
  WriteOneInterval(kToday);
  WriteOneInterval("2024-05-07");
  Run();
  EXPECT_EQ(Booked(kToday), kThreeWh);
  EXPECT_EQ(Booked("2024-05-07"), kThreeWh);
  EXPECT_TRUE(HasSamples(kToday));
  EXPECT_TRUE(HasSamples("2024-05-07"));
}

TEST_F(CalculateDailyPowerConsumption, BooksAnIntervalAcrossMidnightToBothDays) {
  WriteSamples("2024-05-07", {"12:00:00", "23:58:00"});
  WriteSamples(kToday, {"00:03:00", "12:00:00"});
  Run();
  EXPECT_EQ(Booked(kToday), kThreeWh);
  EXPECT_EQ(Booked("2024-05-07"), kThreeWh);
}

TEST_F(CalculateDailyPowerConsumption, RecalculatesAnEntryThatIsExactly210DaysOld) {
  WriteOneInterval(kOldest);
  WriteWholeFile(LedgerPath(), R"([{"Key":"2023-10-11","Value":12.5}])");
  Run();
  EXPECT_EQ(Booked(kOldest), kThreeWh);
  EXPECT_EQ(LedgerText().substr(0, 46), R"([{"Key":"2023-10-11","Value":3.409090995788574)");
}

TEST_F(CalculateDailyPowerConsumption, LeavesAnUndecryptableDayAtZeroAndRetriesIt) {
  WriteWholeFile(SamplePath("2024-05-01"), "!!!!");
  Run();
  EXPECT_EQ(Booked("2024-05-01"), 0.0F);
  EXPECT_TRUE(HasSamples("2024-05-01"));
  WriteOneInterval("2024-05-01");
  Run();
  EXPECT_EQ(Booked("2024-05-01"), kThreeWh);
  EXPECT_FALSE(HasSamples("2024-05-01"));
}

TEST_F(CalculateDailyPowerConsumption, UpdatesTodayAtEachPassUntilTheDayEnds) {
  WriteOneInterval(kToday);
  Run();
  WriteSamples(kToday, {"09:00:00", "10:00:00", "10:05:00", "10:10:00"});
  Run();
  EXPECT_EQ(Booked(kToday), 6.0F / 0.88F);
  WriteSamples(kToday, {"09:00:00", "10:00:00", "10:05:00", "10:10:00", "10:15:00"});
  FakeClock::Set("2024-05-09 14:30:00");
  Run();
  EXPECT_EQ(Booked(kToday), 6.0F / 0.88F);
  EXPECT_TRUE(HasSamples(kToday));
}

TEST_F(CalculateDailyPowerConsumption, KeepsEntriesOlderThan210DaysUntilARestart) {
  Run();
  FakeClock::Set("2024-05-10 14:30:00");
  Run();
  EXPECT_EQ(Booked(kOldest), 0.0F);
  EXPECT_EQ(LedgerText().substr(0, 21), R"([{"Key":"2023-10-11",)");

  TestHelper next(folder.Path().c_str());
  next.CalculateDailyPowerConsumption();
  EXPECT_EQ(LedgerText().substr(0, 21), R"([{"Key":"2023-10-13",)");
}

TEST_F(CalculateDailyPowerConsumption, SetsDataChanged) {
  helper.dataChanged = false;
  Run();
  EXPECT_TRUE(helper.IsDataChanged());
}

TEST_F(CalculateDailyPowerConsumption, EndsWithAClockIn1970) {
  FakeClock::Set("1970-01-03 10:00:00");
  Run();
  EXPECT_EQ(LedgerText(), R"([{"Key":"1970-01-01","Value":0.0},{"Key":"1970-01-02","Value":0.0},)"
                          R"({"Key":"1970-01-03","Value":0.0}])");
}
