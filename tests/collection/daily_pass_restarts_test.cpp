// The ledger over several passes and processes.

#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "collection/ledger_fixture.h"
#include "ledger/fake_days.h"

using namespace TestSupport;

namespace {

using CalculateDailyPowerConsumption = DailyPassFixture;

}  // namespace

TEST_F(CalculateDailyPowerConsumption, RecalculatesADayThatTheFileResetsToZeroAfterAFailedSave) {
  WriteOneInterval("2024-05-03");
  WriteLedger({LedgerElement("2024-05-03", "0.0")});
  {
    const FakeAttributesFailure failure(LedgerPath(), ERROR_SHARING_VIOLATION);
    Run();
  }
  EXPECT_TRUE(HasSamples("2024-05-03"));
  Run();
  EXPECT_EQ(Booked("2024-05-03"), kThreeWh);
  EXPECT_TRUE(LedgerFileHolds("2024-05-03", "3.409090995788574"));
  EXPECT_FALSE(HasSamples("2024-05-03"));
}

TEST_F(CalculateDailyPowerConsumption, BooksADayAgainInTheNextProcessAfterAFailedSave) {
  WriteOneInterval("2024-05-03");
  CreateDirectoryW(LedgerPath().c_str(), nullptr);
  Run();
  RemoveDirectoryW(LedgerPath().c_str());
  TestHelper next(folder.Path().c_str());
  next.CalculateDailyPowerConsumption();
  EXPECT_TRUE(LedgerFileHolds("2024-05-03", "3.409090995788574"));
  EXPECT_FALSE(HasSamples("2024-05-03"));
}

TEST_F(CalculateDailyPowerConsumption, BooksANegativeDayAsFinal) {
  const std::string date = "2024-05-03";
  WriteEncrypted(date, List({Sample(date + "T09:00:00"), Sample(date + "T10:00:00", "-36"),
                             Sample(date + "T10:05:00")}));
  Run();
  EXPECT_EQ(Booked(date), -kThreeWh);
  EXPECT_FALSE(HasSamples(date));
  EXPECT_TRUE(LedgerFileHolds(date, "-3.409090995788574"));
  WriteOneInterval(date);
  Run();
  EXPECT_EQ(Booked(date), -kThreeWh);
}

TEST_F(CalculateDailyPowerConsumption, KeepsTheLedgerInMemoryWhenTheFileIsMissingOrNotAnArray) {
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
    EXPECT_TRUE(LedgerFileHolds("2024-03-01", "12.5"));
  }
}

TEST_F(CalculateDailyPowerConsumption, PrefersTheValuesInTheFileAtEveryPass) {
  WriteLedger({LedgerElement("2024-03-01", "12.5")});
  Run();
  WriteLedger({LedgerElement("2024-03-01", "7.25"), LedgerElement("2024-03-02", "1.5")});
  Run();
  EXPECT_EQ(Booked("2024-03-01"), 7.25F);
  EXPECT_EQ(Booked("2024-03-02"), 1.5F);
  EXPECT_TRUE(LedgerFileHolds("2024-03-01", "7.25"));
}

TEST_F(CalculateDailyPowerConsumption, BooksEachDayOnceOverSeveralPasses) {
  WriteOneInterval("2024-05-05");
  WriteOneInterval("2024-05-07");
  WriteSamples(kToday, {"09:00:00", "10:00:00", "10:05:00"});
  RunAt("2024-05-08 14:30:00");
  EXPECT_EQ(Booked("2024-05-05"), kThreeWh);
  EXPECT_EQ(Booked(kToday), kThreeWh);

  // Energy used after that pass is never booked, and the samples of both days stay.
  WriteSamples(kToday, {"09:00:00", "10:00:00", "10:05:00", "23:58:00"});
  WriteSamples("2024-05-09", {"00:02:00", "12:00:00", "12:05:00"});
  RunAt("2024-05-09 14:30:01");
  EXPECT_EQ(Booked(kToday), kThreeWh);
  EXPECT_EQ(Booked("2024-05-09"), kThreeAndLinkWh);
  EXPECT_TRUE(HasSamples("2024-05-07"));

  // One day without a pass, then a day whose samples appear only after it has ended.
  RunAt("2024-05-11 14:30:02");
  EXPECT_EQ(Booked("2024-05-10"), 0.0F);
  WriteOneInterval("2024-05-10");
  RunAt("2024-05-12 14:30:03");
  EXPECT_EQ(Booked("2024-05-10"), kThreeWh);
  EXPECT_FALSE(HasSamples("2024-05-10"));
  for (const char* date : {"2024-05-07", kToday, "2024-05-09"}) {
    EXPECT_TRUE(HasSamples(date)) << date;
  }
}

TEST_F(CalculateDailyPowerConsumption, LoadsTheLedgerAtTheFirstPassAfterARestart) {
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

TEST_F(CalculateDailyPowerConsumption, RecalculatesTodayAfterARestartOnTheSameDay) {
  WriteOneInterval(kToday);
  Run();
  WriteSamples(kToday, {"09:00:00", "10:00:00", "10:05:00", "10:10:00"});
  TestHelper next(folder.Path().c_str());
  next.CalculateDailyPowerConsumption();
  EXPECT_EQ(next.dailyLedger.at(Day(kToday)), 6.0F / 0.88F);
}

TEST_F(CalculateDailyPowerConsumption, KeepsTheSamplesOfTomorrowWhenTheClockIsPutBack) {
  WriteOneInterval(kToday);
  WriteOneInterval("2024-05-07");
  Run();
  // Both days are booked already; today is recalculated anyway.
  WriteSamples("2024-05-07", {"09:00:00", "10:00:00", "10:05:00", "10:10:00"});
  RunAt("2024-05-07 14:30:00");
  EXPECT_EQ(Booked("2024-05-07"), 6.0F / 0.88F);
  EXPECT_EQ(Booked(kToday), kThreeWh);
  EXPECT_TRUE(HasSamples(kToday));
  EXPECT_TRUE(LedgerFileHolds(kToday, "3.409090995788574"));
}

TEST_F(CalculateDailyPowerConsumption, ResetsTheOldestDayAtTheNextPassWhenItsSamplesAreGone) {
  WriteOneInterval("2023-10-11");
  Run();
  EXPECT_EQ(Booked("2023-10-11"), kThreeWh);
  TestHelper next(folder.Path().c_str());
  next.CalculateDailyPowerConsumption();
  EXPECT_EQ(next.dailyLedger.at(Day("2023-10-11")), 0.0F);
}
