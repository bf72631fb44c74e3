#include <memory>

#include <gtest/gtest.h>

#include "base/fake_attributes.h"
#include "collection/ledger_fixture.h"
#include "ledger/fake_days.h"

// The daily pass beside files that cannot be read, written or trusted.

using namespace TestSupport;

namespace {

constexpr char kToday[] = "2024-05-08";
constexpr DWORD kDeduplicated = 0x80000013;
constexpr wchar_t kSaveFailed[] = L"Error in CalculateDailyPowerConsumption() : Save Json failed";

class LedgerFiles : public LedgerFixture {
 protected:
  void Run() { helper.CalculateDailyPowerConsumption(); }

  std::vector<LogRecord> Errors() const {
    std::vector<LogRecord> errors;
    for (const LogRecord& record : log.Records()) {
      if (record.level != Standin::LogLevel::kInfo) errors.push_back(record);
    }
    return errors;
  }

  /// A first pass while `fail` makes a status query of the ledger fail, then one in the same
  /// process without that failure. The 1st has a value and no samples, the 3rd has samples and no
  /// value.
  template <typename Fail>
  void ExpectNoSaveWhile(Fail fail) {
    const std::string content = R"([{"Key":"2024-05-01","Value":12.5}])";
    WriteWholeFile(LedgerPath(), content);
    WriteOneInterval("2024-05-03");
    log.Clear();
    TestHelper other(folder.Path().c_str());
    other.dataChanged = false;
    {
      const auto failure = fail();
      other.CalculateDailyPowerConsumption();
    }
    EXPECT_EQ(Errors(), std::vector<LogRecord>{Error(kSaveFailed)});
    EXPECT_EQ(LedgerText(), content);
    EXPECT_TRUE(FileExists(SamplePath("2024-05-03")));
    EXPECT_TRUE(other.dataChanged);
    EXPECT_EQ(other.dailyLedger.at(Day("2024-05-03")), kThreeWh);

    other.dailyLedger.erase(Day("2024-05-03"));
    other.CalculateDailyPowerConsumption();
    EXPECT_EQ(Errors().size(), 1U);
    EXPECT_EQ(other.dailyLedger.at(Day("2024-05-01")), 12.5F);
    EXPECT_NE(LedgerText().find(R"({"Key":"2024-05-01","Value":12.5})"), std::string::npos);
    EXPECT_FALSE(FileExists(SamplePath("2024-05-03")));
  }
};

}  // namespace

TEST_F(LedgerFiles, FailedSaveIsLoggedOncePerPassAndTheLedgerStands) {
  CreateDirectoryW(LedgerPath().c_str(), nullptr);
  WriteOneInterval(kToday);
  helper.dataChanged = false;
  Run();
  EXPECT_EQ(Errors(), std::vector<LogRecord>{Error(kSaveFailed)});
  EXPECT_TRUE(helper.dataChanged);
  EXPECT_EQ(Booked(kToday), kThreeWh);

  Run();
  EXPECT_EQ(Errors(), (std::vector<LogRecord>{Error(kSaveFailed), Error(kSaveFailed)}));
  RemoveDirectoryW(LedgerPath().c_str());
  Run();
  EXPECT_EQ(Errors().size(), 2U);
  EXPECT_NE(LedgerText().find(R"({"Key":"2024-05-08","Value":3.409090995788574})"),
            std::string::npos);
}

TEST_F(LedgerFiles, MissingDataFolderFailsTheSave) {
  const std::wstring missing = folder.File(L"missing");
  TestHelper other(missing.c_str());
  other.CalculateDailyPowerConsumption();
  EXPECT_EQ(Errors(), std::vector<LogRecord>{Error(kSaveFailed)});
  EXPECT_FALSE(FileExists(missing));
}

TEST_F(LedgerFiles, LedgerThatIsALinkIsNeitherReadNorWrittenThrough) {
  const std::string content = R"([{"Key":"2024-05-01","Value":12.5}])";
  WriteWholeFile(LedgerPath(), content);
  {
    const FakeReparsePoint link(LedgerPath(), IO_REPARSE_TAG_SYMLINK);
    Run();
  }
  EXPECT_EQ(Booked("2024-05-01"), 0.0F);
  EXPECT_EQ(Errors(), std::vector<LogRecord>{Error(kSaveFailed)});
  EXPECT_EQ(LedgerText(), content);
}

TEST_F(LedgerFiles, LedgerThatDoesNotParseOrIsNoArrayIsOverwritten) {
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
  EXPECT_TRUE(Errors().empty());
}

TEST_F(LedgerFiles, NumberBeyond32BitFloatInTheLedgerDoesNotCutTheNextSave) {
  WriteWholeFile(LedgerPath(),
                 R"([{"Key":"2024-05-01","Value":1e300},{"Key":"2024-05-02","Value":12.5}])");
  Run();
  const std::string text = LedgerText();
  EXPECT_NE(text.find(R"({"Key":"2024-05-01","Value":0.0},{"Key":"2024-05-02","Value":12.5},)"),
            std::string::npos);
  EXPECT_TRUE(text.ends_with(R"(,{"Key":"2024-05-08","Value":0.0}])"));
}

TEST_F(LedgerFiles, LedgerWhoseAttributesCannotBeReadIsNotSavedOver) {
  for (const DWORD error : {ERROR_SHARING_VIOLATION, ERROR_ACCESS_DENIED, ERROR_NOT_READY,
                            ERROR_LOCK_VIOLATION, ERROR_NETNAME_DELETED, ERROR_IO_DEVICE}) {
    SCOPED_TRACE(error);
    ExpectNoSaveWhile([&] { return std::make_unique<FakeAttributesFailure>(LedgerPath(), error); });
  }
}

TEST_F(LedgerFiles, LedgerWhoseStatusCannotBeReadIsNotSavedOver) {
  ExpectNoSaveWhile([&] { return std::make_unique<FakeStatusFailure>(LedgerPath()); });
}

TEST_F(LedgerFiles, LedgerWhoseReparseTagCannotBeReadIsNotSavedOver) {
  ExpectNoSaveWhile([&] {
    auto point = std::make_unique<FakeReparsePoint>(LedgerPath(), kDeduplicated);
    point->FailSearch();
    return point;
  });
  ExpectNoSaveWhile([&] {
    auto point = std::make_unique<FakeReparsePoint>(LedgerPath(), kDeduplicated);
    point->SearchFindsNoReparsePoint();
    return point;
  });
}

TEST_F(LedgerFiles, LedgerThatIsNotFoundIsSavedAnew) {
  for (const DWORD error : {ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND}) {
    SCOPED_TRACE(error);
    DeleteFileW(LedgerPath().c_str());
    const FakeAttributesFailure failure(LedgerPath(), error);
    TestHelper other(folder.Path().c_str());
    other.CalculateDailyPowerConsumption();
    EXPECT_EQ(LedgerText().substr(0, 34), R"([{"Key":"2023-10-11","Value":0.0},)");
  }
  EXPECT_TRUE(Errors().empty());
}

TEST_F(LedgerFiles, DeduplicatedLedgerIsReadAndSaved) {
  WriteWholeFile(LedgerPath(), R"([{"Key":"2024-05-01","Value":12.5}])");
  const FakeReparsePoint point(LedgerPath(), kDeduplicated);
  Run();
  EXPECT_EQ(Booked("2024-05-01"), 12.5F);
  EXPECT_TRUE(Errors().empty());
  EXPECT_EQ(LedgerText().substr(0, 34), R"([{"Key":"2023-10-11","Value":0.0},)");
}

TEST_F(LedgerFiles, UnreadStatusLeavesTheLedgerInMemory) {
  WriteWholeFile(LedgerPath(), R"([{"Key":"2024-05-01","Value":12.5}])");
  Run();
  const FakeStatusFailure failure(LedgerPath());
  Run();
  EXPECT_EQ(Booked("2024-05-01"), 12.5F);
}

TEST_F(LedgerFiles, StatusFailureOfOneDayLeavesThatDayAtZeroAndTheOthersBooked) {
  WriteOneInterval(kToday);
  WriteOneInterval("2024-05-03");
  WriteOneInterval("2024-05-01");
  {
    const FakeStatusFailure failure(SamplePath("2024-05-03"));
    Run();
  }
  EXPECT_EQ(Booked(kToday), kThreeWh);
  EXPECT_EQ(Booked("2024-05-03"), 0.0F);
  EXPECT_EQ(Booked("2024-05-01"), kThreeWh);
  EXPECT_TRUE(FileExists(SamplePath("2024-05-03")));
  EXPECT_FALSE(FileExists(SamplePath("2024-05-01")));
  EXPECT_TRUE(Errors().empty());

  Run();
  EXPECT_EQ(Booked("2024-05-03"), kThreeWh);
}

TEST_F(LedgerFiles, StatusFailureOfANeighbourLeavesTheDayAtZeroToo) {
  WriteOneInterval("2024-05-03");
  WriteOneInterval("2024-05-02");
  WriteOneInterval("2024-05-01");
  {
    // The first sample of the 3rd asks for the 2nd, the last one of the 1st too.
    const FakeStatusFailure failure(SamplePath("2024-05-02"));
    Run();
  }
  for (const char* date : {"2024-05-03", "2024-05-02", "2024-05-01"}) {
    EXPECT_EQ(Booked(date), 0.0F) << date;
    EXPECT_TRUE(FileExists(SamplePath(date))) << date;
  }
  EXPECT_EQ(helper.dailyLedger.size(), 211U);
  EXPECT_TRUE(Errors().empty());

  Run();
  for (const char* date : {"2024-05-03", "2024-05-02", "2024-05-01"}) {
    EXPECT_EQ(Booked(date), kThreeWh) << date;
  }
}

TEST_F(LedgerFiles, SamplesThatAreALinkOrAFolderAreNoSamples) {
  WriteOneInterval("2024-05-03");
  CreateDirectoryW(SamplePath("2024-05-02").c_str(), nullptr);
  const FakeReparsePoint link(SamplePath("2024-05-03"), IO_REPARSE_TAG_SYMLINK);
  Run();
  EXPECT_EQ(Booked("2024-05-03"), 0.0F);
  EXPECT_EQ(Booked("2024-05-02"), 0.0F);
  EXPECT_EQ(log.Records(), std::vector<LogRecord>{Info(L"Date:2024-05-08")});
}

TEST_F(LedgerFiles, LinkInThePlaceOfSamplesIsNotDeletedWhenALeftoverCopyIsBooked) {
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

TEST_F(LedgerFiles, SamplesOfAnyContentDoNotEndThePass) {
  for (const char* json :
       {"", "[", "{}", "null", "[null,1,\"x\",[],{}]", "[[[[[[[[[[[[[[", "[{\"Power\":1e308}]",
        R"([{"TelemetryType":"PCM_SENSOR"},{"TelemetryType":"PCM_SENSOR"}])"}) {
    SCOPED_TRACE(json);
    WriteEncrypted("2024-05-03", json);
    Run();
    EXPECT_EQ(Booked("2024-05-03"), 0.0F);
    EXPECT_TRUE(FileExists(SamplePath("2024-05-03")));
  }
  EXPECT_TRUE(Errors().empty());
}
