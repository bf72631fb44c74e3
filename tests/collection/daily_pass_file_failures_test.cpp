// The daily pass with files that cannot be read, written or trusted.

#include <windows.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "base/failing_status.h"
#include "base/fake_attributes.h"
#include "collection/ledger_fixture.h"
#include "ledger/fake_days.h"

using namespace TestSupport;

namespace {

constexpr DWORD kDeduplicated = 0x80000013;

using CalculateDailyPowerConsumption = DailyPassFixture;

}  // namespace

TEST_F(CalculateDailyPowerConsumption, LogsAFailedSaveOncePerPassAndKeepsTheLedgerInMemory) {
  CreateDirectoryW(LedgerPath().c_str(), nullptr);
  WriteOneInterval(kToday);
  helper.dataChanged = false;
  Run();
  EXPECT_EQ(Problems(), std::vector<LogRecord>{Error(kSaveFailed)});
  EXPECT_TRUE(helper.dataChanged);
  EXPECT_EQ(Booked(kToday), kThreeWh);

  Run();
  EXPECT_EQ(Problems(), (std::vector<LogRecord>{Error(kSaveFailed), Error(kSaveFailed)}));
  RemoveDirectoryW(LedgerPath().c_str());
  Run();
  EXPECT_EQ(Problems().size(), 2U);
  EXPECT_NE(LedgerText().find(R"({"Key":"2024-05-08","Value":3.409090995788574})"),
            std::string::npos);
}

TEST_F(CalculateDailyPowerConsumption, FailsToSaveWithoutADataFolder) {
  const std::wstring missing = folder.File(L"missing");
  TestHelper other(missing.c_str());
  other.CalculateDailyPowerConsumption();
  EXPECT_EQ(Problems(), std::vector<LogRecord>{Error(kSaveFailed)});
  EXPECT_FALSE(FileExists(missing));
}

TEST_F(CalculateDailyPowerConsumption, NeitherReadsNorWritesALedgerThatIsALink) {
  const std::string content = R"([{"Key":"2024-05-01","Value":12.5}])";
  WriteWholeFile(LedgerPath(), content);
  {
    const FakeReparsePoint link(LedgerPath(), IO_REPARSE_TAG_SYMLINK);
    Run();
  }
  EXPECT_EQ(Booked("2024-05-01"), 0.0F);
  EXPECT_EQ(Problems(), std::vector<LogRecord>{Error(kSaveFailed)});
  EXPECT_EQ(LedgerText(), content);
}

TEST_F(CalculateDailyPowerConsumption, OverwritesALedgerThatIsNotAJsonArray) {
  for (const char* content :
       {"", "[{\"Key\":\"2024-05-01\",\"Value\":12.5}", "{\"Key\":\"2024-05-01\",\"Value\":12.5}",
        "null", "\xFF\xFE[", "[1,2"}) {
    SCOPED_TRACE(content);
    WriteWholeFile(LedgerPath(), content);
    TestHelper other(folder.Path().c_str());
    other.CalculateDailyPowerConsumption();
    EXPECT_EQ(other.dailyLedger.size(), 211U);
    EXPECT_EQ(LedgerText().substr(0, 34), R"([{"Key":"2023-10-11","Value":0.0},)");
  }
  EXPECT_TRUE(Problems().empty());
}

TEST_F(CalculateDailyPowerConsumption, SavesTheWholeLedgerAfterReadingANumberBeyondAFloat) {
  WriteWholeFile(LedgerPath(),
                 R"([{"Key":"2024-05-01","Value":1e300},{"Key":"2024-05-02","Value":12.5}])");
  Run();
  const std::string text = LedgerText();
  EXPECT_NE(text.find(R"({"Key":"2024-05-01","Value":0.0},{"Key":"2024-05-02","Value":12.5},)"),
            std::string::npos);
  EXPECT_TRUE(text.ends_with(R"(,{"Key":"2024-05-08","Value":0.0}])"));
}

TEST_F(CalculateDailyPowerConsumption, DoesNotOverwriteALedgerWhoseAttributesCannotBeRead) {
  for (const DWORD error : {ERROR_SHARING_VIOLATION, ERROR_ACCESS_DENIED, ERROR_NOT_READY,
                            ERROR_LOCK_VIOLATION, ERROR_NETNAME_DELETED, ERROR_IO_DEVICE}) {
    SCOPED_TRACE(error);
    ExpectNoSaveWhile([&] { return std::make_shared<FakeAttributesFailure>(LedgerPath(), error); });
  }
}

TEST_F(CalculateDailyPowerConsumption, DoesNotOverwriteALedgerWhoseStatusCannotBeRead) {
  ExpectNoSaveWhile([&] { return std::make_shared<FailingStatus>(LedgerPath()); });
}

TEST_F(CalculateDailyPowerConsumption, DoesNotOverwriteALedgerWhoseReparseTagCannotBeRead) {
  ExpectNoSaveWhile([&] {
    auto point = std::make_shared<FakeReparsePoint>(LedgerPath(), kDeduplicated);
    point->FailSearch();
    return point;
  });
  ExpectNoSaveWhile([&] {
    auto point = std::make_shared<FakeReparsePoint>(LedgerPath(), kDeduplicated);
    point->SearchFindsNoReparsePoint();
    return point;
  });
}

TEST_F(CalculateDailyPowerConsumption, CreatesALedgerThatDoesNotExist) {
  for (const DWORD error : {ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND}) {
    SCOPED_TRACE(error);
    DeleteFileW(LedgerPath().c_str());
    const FakeAttributesFailure failure(LedgerPath(), error);
    TestHelper other(folder.Path().c_str());
    other.CalculateDailyPowerConsumption();
    EXPECT_EQ(LedgerText().substr(0, 34), R"([{"Key":"2023-10-11","Value":0.0},)");
  }
  EXPECT_TRUE(Problems().empty());
}

TEST_F(CalculateDailyPowerConsumption, ReadsAndSavesADeduplicatedLedger) {
  WriteWholeFile(LedgerPath(), R"([{"Key":"2024-05-01","Value":12.5}])");
  const FakeReparsePoint point(LedgerPath(), kDeduplicated);
  Run();
  EXPECT_EQ(Booked("2024-05-01"), 12.5F);
  EXPECT_TRUE(Problems().empty());
  EXPECT_EQ(LedgerText().substr(0, 34), R"([{"Key":"2023-10-11","Value":0.0},)");
}

TEST_F(CalculateDailyPowerConsumption, KeepsTheLedgerInMemoryWhenItsStatusCannotBeRead) {
  WriteWholeFile(LedgerPath(), R"([{"Key":"2024-05-01","Value":12.5}])");
  Run();
  const FailingStatus failure(LedgerPath());
  Run();
  EXPECT_EQ(Booked("2024-05-01"), 12.5F);
}

TEST_F(CalculateDailyPowerConsumption, LeavesADayAtZeroWhenItsStatusCannotBeReadAndBooksTheOthers) {
  WriteOneInterval(kToday);
  WriteOneInterval("2024-05-03");
  WriteOneInterval("2024-05-01");
  {
    const FailingStatus failure(SamplePath("2024-05-03"));
    Run();
  }
  EXPECT_EQ(Booked(kToday), kThreeWh);
  EXPECT_EQ(Booked("2024-05-03"), 0.0F);
  EXPECT_EQ(Booked("2024-05-01"), kThreeWh);
  EXPECT_TRUE(FileExists(SamplePath("2024-05-03")));
  EXPECT_FALSE(FileExists(SamplePath("2024-05-01")));
  EXPECT_TRUE(Problems().empty());

  Run();
  EXPECT_EQ(Booked("2024-05-03"), kThreeWh);
}

TEST_F(CalculateDailyPowerConsumption, LeavesADayAtZeroWhenANeighboursStatusCannotBeRead) {
  WriteOneInterval("2024-05-03");
  WriteOneInterval("2024-05-02");
  WriteOneInterval("2024-05-01");
  {
    // The first sample of the 3rd and the last one of the 1st need the 2nd.
    const FailingStatus failure(SamplePath("2024-05-02"));
    Run();
  }
  for (const char* date : {"2024-05-03", "2024-05-02", "2024-05-01"}) {
    EXPECT_EQ(Booked(date), 0.0F) << date;
    EXPECT_TRUE(FileExists(SamplePath(date))) << date;
  }
  EXPECT_EQ(helper.dailyLedger.size(), 211U);
  EXPECT_TRUE(Problems().empty());

  Run();
  for (const char* date : {"2024-05-03", "2024-05-02", "2024-05-01"}) {
    EXPECT_EQ(Booked(date), kThreeWh) << date;
  }
}

TEST_F(CalculateDailyPowerConsumption, IgnoresSamplesThatAreALinkOrAFolder) {
  WriteOneInterval("2024-05-03");
  CreateDirectoryW(SamplePath("2024-05-02").c_str(), nullptr);
  const FakeReparsePoint link(SamplePath("2024-05-03"), IO_REPARSE_TAG_SYMLINK);
  Run();
  EXPECT_EQ(Booked("2024-05-03"), 0.0F);
  EXPECT_EQ(Booked("2024-05-02"), 0.0F);
  EXPECT_EQ(log.Records(), std::vector<LogRecord>{Info(L"Date:2024-05-08")});
}

TEST_F(CalculateDailyPowerConsumption, DoesNotDeleteALinkNamedLikeSamplesWhenBookingALeftoverCopy) {
  WriteOneInterval("2024-05-03");
  WriteWholeFile(folder.File(L"unencrypt-PcmSampleData_2024-05-03.json"),
                 List({Sample("2024-05-03T09:00:00"), Sample("2024-05-03T10:00:00"),
                       Sample("2024-05-03T10:05:00")}));
  {
    const FakeReparsePoint link(SamplePath("2024-05-03"), IO_REPARSE_TAG_SYMLINK);
    Run();
  }
  EXPECT_EQ(Booked("2024-05-03"), kThreeWh);
  EXPECT_TRUE(FileExists(SamplePath("2024-05-03")));
}

TEST_F(CalculateDailyPowerConsumption, CompletesThePassWithMalformedSamples) {
  for (const char* json :
       {"", "[", "{}", "null", "[null,1,\"x\",[],{}]", "[[[[[[[[[[[[[[", "[{\"Power\":1e308}]",
        R"([{"TelemetryType":"PCM_SENSOR"},{"TelemetryType":"PCM_SENSOR"}])"}) {
    SCOPED_TRACE(json);
    WriteEncrypted("2024-05-03", json);
    Run();
    EXPECT_EQ(Booked("2024-05-03"), 0.0F);
    EXPECT_TRUE(FileExists(SamplePath("2024-05-03")));
  }
  EXPECT_TRUE(Problems().empty());
}
