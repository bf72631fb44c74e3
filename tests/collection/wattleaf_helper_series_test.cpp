// The helper's series and figures: which day each one reads, and what it logs.

#include <gtest/gtest.h>

#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "base/failing_status.h"
#include "collection/ledger_fixture.h"
#include "ledger/fake_days.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace TestSupport;

namespace {

constexpr char kYesterday[] = "2024-05-07";

class WattleafHelperSeries : public LedgerFixture {
 protected:
  std::wstring Hours() {
    std::wstring result = L"before";
    helper.GetDailyPowerConsumption(result);
    return result;
  }
  std::wstring Days() {
    std::wstring result = L"before";
    helper.GetWeeklyPowerConsumption(result);
    return result;
  }
  std::wstring Months() {
    std::wstring result = L"before";
    helper.GetMonthlyPowerConsumption(result);
    return result;
  }

  bool IsUnlocked() {
    const std::unique_lock lock(helper.dataMutex, std::try_to_lock);
    return lock.owns_lock();
  }
};

using GetDailyPowerConsumption = WattleafHelperSeries;
using GetWeeklyPowerConsumption = WattleafHelperSeries;
using GetMonthlyPowerConsumption = WattleafHelperSeries;
using GetJsonFromDate = WattleafHelperSeries;
using GetPowerConsumption = WattleafHelperSeries;
using GetDailyAveragePowerConsumption = WattleafHelperSeries;
using GetTreeSavedCount = WattleafHelperSeries;
using GetDevicePath = WattleafHelperSeries;

/// The text of a series with these labels and printed values.
std::wstring SeriesOf(const std::wstring& range, const std::wstring& labelKey,
                      const std::vector<std::pair<std::wstring, std::wstring>>& entries) {
  std::wstring text = L"{\"Range\":[" + range + L"],\"Value\":[";
  for (std::size_t i = 0; i < entries.size(); ++i) {
    text += (i > 0 ? L",{\"" : L"{\"") + labelKey + L"\":\"" + entries[i].first + L"\",\"Value\":" +
            entries[i].second + L"}";
  }
  return text + L"]}";
}

// 3.0 and 6.0 divided by 0.88 in 32 bits, widened.
constexpr wchar_t kThreeText[] = L"3.409090995788574";
constexpr wchar_t kSixText[] = L"6.818181991577148";

}  // namespace

TEST_F(GetDailyPowerConsumption, ReadsTodaysFileInTheAfternoon) {
  WriteSamples(
      kToday, {"09:00:00", "10:00:00", "10:05:00", "11:00:00", "14:10:00", "14:15:00", "14:20:00"});
  WriteSamples(kYesterday, {"00:00:00", "20:00:00", "20:05:00", "20:10:00"});
  EXPECT_EQ(Hours(), SeriesOf(L"0.0,3.409090995788574", L"Time",
                              {{L"2:00", L"0.0"},
                               {L"3:00", L"0.0"},
                               {L"4:00", L"0.0"},
                               {L"5:00", L"0.0"},
                               {L"6:00", L"0.0"},
                               {L"7:00", L"0.0"},
                               {L"8:00", L"0.0"},
                               {L"9:00", L"0.0"},
                               {L"10:00", kThreeText},
                               {L"11:00", L"0.0"},
                               {L"12:00", L"0.0"},
                               {L"13:00", L"0.0"}}));
}

TEST_F(GetDailyPowerConsumption, StartsInYesterdaysFileInTheMorning) {
  FakeClock::Set("2024-05-08 05:10:00");
  WriteSamples(kToday, {"00:00:00", "04:00:00", "04:05:00", "04:06:00", "05:06:00"});
  WriteSamples(kYesterday, {"00:00:00", "17:00:00", "17:10:00", "17:15:00", "22:00:00"});
  // Today counts from 04:00 to 04:05 and one minute more; then comes a gap.
  EXPECT_EQ(Hours(), SeriesOf(L"0.0,10.227272987365723", L"Time",
                              {{L"17:00", L"10.227272987365723"},
                               {L"18:00", L"0.0"},
                               {L"19:00", L"0.0"},
                               {L"20:00", L"0.0"},
                               {L"21:00", L"0.0"},
                               {L"22:00", L"0.0"},
                               {L"23:00", L"0.0"},
                               {L"0:00", L"0.0"},
                               {L"1:00", L"0.0"},
                               {L"2:00", L"0.0"},
                               {L"3:00", L"0.0"},
                               {L"4:00", L"4.090909004211426"}}));
}

TEST_F(GetDailyPowerConsumption, ReadsOnlyYesterdaysFileJustAfterMidnight) {
  FakeClock::Set("2024-05-08 00:10:00");
  WriteSamples(kYesterday, {"00:00:00", "23:00:00", "23:10:00"});
  WriteSamples(kToday, {"00:00:00", "00:01:00", "00:02:00", "00:03:00"});
  EXPECT_EQ(Hours(), SeriesOf(L"0.0,6.818181991577148", L"Time",
                              {{L"12:00", L"0.0"},
                               {L"13:00", L"0.0"},
                               {L"14:00", L"0.0"},
                               {L"15:00", L"0.0"},
                               {L"16:00", L"0.0"},
                               {L"17:00", L"0.0"},
                               {L"18:00", L"0.0"},
                               {L"19:00", L"0.0"},
                               {L"20:00", L"0.0"},
                               {L"21:00", L"0.0"},
                               {L"22:00", L"0.0"},
                               {L"23:00", kSixText}}));
}

TEST_F(GetDailyPowerConsumption, ReadsYesterdayBeforeToday) {
  WriteOneInterval(kToday);
  WriteOneInterval(kYesterday);
  Hours();
  EXPECT_EQ(log.Records(), (std::vector<LogRecord>{
                               Info(L"Decrypting file :" + SamplePath(kYesterday)),
                               Info(L"Decrypting file :" + SamplePath(kToday)),
                           }));
}

TEST_F(GetDailyPowerConsumption, ReturnsTwelveZerosWithoutSamples) {
  const std::wstring text = Hours();
  EXPECT_TRUE(
      text.starts_with(L"{\"Range\":[0.0,0.0],\"Value\":[{\"Time\":\"2:00\",\"Value\":0.0"));
  std::size_t count = 0;
  for (auto at = text.find(L"\"Value\":0.0}"); at != std::wstring::npos;
       at = text.find(L"\"Value\":0.0}", at + 1)) {
    ++count;
  }
  EXPECT_EQ(count, 12U);
  EXPECT_TRUE(log.Records().empty());
}

TEST_F(GetJsonFromDate, ReadsTheSamplesOfADay) {
  WriteEncrypted(kToday, "[7]");
  const std::unique_ptr<GenericDocument> samples(helper.GetJsonFromDate(Day(kToday)));
  ASSERT_TRUE(samples);
  ASSERT_TRUE(samples->IsArray());
  ASSERT_EQ(samples->Size(), 1U);
  EXPECT_EQ((*samples)[0].GetInt(), 7);
}

TEST_F(GetJsonFromDate, ReturnsAnEmptyArrayWithoutSamples) {
  const std::unique_ptr<GenericDocument> samples(helper.GetJsonFromDate(Day(kToday)));
  ASSERT_TRUE(samples);
  EXPECT_TRUE(samples->IsArray());
  EXPECT_TRUE(samples->Empty());
}

TEST_F(GetPowerConsumption, IsEmptyForSamplesThatDoNotParse) {
  WriteEncrypted(kToday, "no json");
  EXPECT_EQ(std::unique_ptr<GenericDocument>(helper.GetJsonFromDate(Day(kToday))), nullptr);
  EXPECT_TRUE(helper.GetPowerConsumption(Day(kToday)).empty());
}

TEST_F(GetPowerConsumption, IsEmptyForAListThatEndsInTheMiddle) {
  const std::string list = List({Sample("2024-05-08T10:00:00"), Sample("2024-05-08T10:05:00"),
                                 Sample("2024-05-08T11:00:00"), Sample("2024-05-08T11:05:00")});
  WriteEncrypted(kToday, list);
  EXPECT_FALSE(helper.GetPowerConsumption(Day(kToday)).empty());
  WriteEncrypted(kToday, list.substr(0, list.size() - 1));
  EXPECT_TRUE(helper.GetPowerConsumption(Day(kToday)).empty());
}

TEST_F(GetWeeklyPowerConsumption, ReturnsSevenZerosBeforeTheFirstPass) {
  EXPECT_EQ(Days(), SeriesOf(L"0.0,0.0", L"Day",
                             {{L"Wed", L"0.0"},
                              {L"Thu", L"0.0"},
                              {L"Fri", L"0.0"},
                              {L"Sat", L"0.0"},
                              {L"Sun", L"0.0"},
                              {L"Mon", L"0.0"},
                              {L"Tue", L"0.0"}}));
}

TEST_F(GetWeeklyPowerConsumption, EndsWithYesterday) {
  helper.dailyLedger[Day(kYesterday)] = 12.5F;
  helper.dailyLedger[Day(kToday)] = 99.0F;
  EXPECT_EQ(Days(), SeriesOf(L"0.0,12.5", L"Day",
                             {{L"Wed", L"0.0"},
                              {L"Thu", L"0.0"},
                              {L"Fri", L"0.0"},
                              {L"Sat", L"0.0"},
                              {L"Sun", L"0.0"},
                              {L"Mon", L"0.0"},
                              {L"Tue", L"12.5"}}));
}

TEST_F(GetMonthlyPowerConsumption, ReturnsSixZerosBeforeTheFirstPass) {
  EXPECT_EQ(Months(), SeriesOf(L"0.0,0.0", L"Month",
                               {{L"Dec", L"0.0"},
                                {L"Jan", L"0.0"},
                                {L"Feb", L"0.0"},
                                {L"Mar", L"0.0"},
                                {L"Apr", L"0.0"},
                                {L"May", L"0.0"}}));
}

TEST_F(GetMonthlyPowerConsumption, EndsWithTheCurrentMonth) {
  helper.dailyLedger[Day("2023-12-01")] = 1.5F;
  helper.dailyLedger[Day(kToday)] = 2.5F;
  EXPECT_EQ(Months(), SeriesOf(L"0.0,2.5", L"Month",
                               {{L"Dec", L"1.5"},
                                {L"Jan", L"0.0"},
                                {L"Feb", L"0.0"},
                                {L"Mar", L"0.0"},
                                {L"Apr", L"0.0"},
                                {L"May", L"2.5"}}));
}

TEST_F(GetDailyPowerConsumption, LogsOneLineWhenAFileStatusCannotBeRead) {
  WriteOneInterval(kToday);
  const FailingStatus failure(SamplePath(kToday));
  EXPECT_EQ(Hours(), L"before");
  EXPECT_EQ(log.Records(), std::vector<LogRecord>{Error(L"Exception in GetDailyPowerConsumption")});
  EXPECT_TRUE(IsUnlocked());
}

TEST_F(WattleafHelperSeries, LogsOneLinePerSeriesAndLeavesTheResultOnAnyFailure) {
  FakeClock::Break();
  EXPECT_EQ(Hours(), L"before");
  EXPECT_EQ(Days(), L"before");
  EXPECT_EQ(Months(), L"before");
  EXPECT_EQ(log.Records(), (std::vector<LogRecord>{
                               Error(L"Exception in GetDailyPowerConsumption"),
                               Error(L"Exception in GetWeeklyPowerConsumption"),
                               Error(L"Exception in GetMonthlyPowerConsumption"),
                           }));
  EXPECT_TRUE(IsUnlocked());
}

TEST_F(GetDailyAveragePowerConsumption, IsZeroForAnEmptyLedger) {
  EXPECT_EQ(helper.GetDailyAveragePowerConsumption(), 0.0F);
  EXPECT_TRUE(IsUnlocked());
}

TEST_F(GetTreeSavedCount, IsZeroForAnEmptyLedger) {
  EXPECT_EQ(helper.GetTreeSavedCount(), 0.0F);
  EXPECT_TRUE(IsUnlocked());
}

TEST_F(GetDailyAveragePowerConsumption, CoversTodayAndTheSixDaysBefore) {
  helper.dailyLedger[Day(kToday)] = 7.0F;
  EXPECT_EQ(helper.GetDailyAveragePowerConsumption(), 1.0F);
  helper.dailyLedger[Day("2024-05-02")] = 7.0F;
  helper.dailyLedger[Day("2024-05-01")] = 900.0F;
  EXPECT_EQ(helper.GetDailyAveragePowerConsumption(), 2.0F);
}

TEST_F(GetTreeSavedCount, IsDerivedFromTheDailyAverage) {
  helper.dailyLedger[Day(kToday)] = 2100.0F;
  EXPECT_FLOAT_EQ(helper.GetTreeSavedCount(), 1.095F);
}

TEST_F(GetDevicePath, ReturnsADevicePathForADriveAndNothingOtherwise) {
  EXPECT_EQ(helper.GetDevicePath("C:").substr(0, 8), "\\Device\\");
  EXPECT_EQ(helper.GetDevicePath("no drive"), "");
  EXPECT_TRUE(log.Records().empty()) << "a failed lookup is not logged";
}
