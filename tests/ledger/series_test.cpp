#include "ledger/series.h"

#include <gtest/gtest.h>

#include <ostream>

#include "base/local_calendar.h"
#include "ledger/fake_days.h"
#include "ledger/series_parts.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace TestSupport;

namespace {

/// The 24 hours of a day with the values `base` to `base + 23`, so that a wrong day or hour shows.
std::map<int, float> HoursFrom(float base) {
  std::map<int, float> hours;
  for (int hour = 0; hour < 24; ++hour) hours[hour] = base + static_cast<float>(hour);
  return hours;
}

Series MonthsAt(const std::string& date, const PowerLedger& ledger = {}) {
  DateTime now = Day(date);
  now.tm_hour = 14;
  now.tm_min = 30;
  return MonthSeries(Day(date), now, ledger);
}

}  // namespace

TEST(HourSeries, TakesAllHoursFromTodayInTheAfternoon) {
  const Series series = HourSeries(14, HoursFrom(1000), HoursFrom(0));
  EXPECT_EQ(LabelsOf(series), (Labels{"2:00", "3:00", "4:00", "5:00", "6:00", "7:00", "8:00",
                                      "9:00", "10:00", "11:00", "12:00", "13:00"}));
  EXPECT_EQ(ValuesOf(series), (Values{2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}));
}

TEST(HourSeries, BeginsWithYesterdayInTheEarlyMorning) {
  const Series series = HourSeries(5, HoursFrom(1000), HoursFrom(0));
  EXPECT_EQ(LabelsOf(series), (Labels{"17:00", "18:00", "19:00", "20:00", "21:00", "22:00", "23:00",
                                      "0:00", "1:00", "2:00", "3:00", "4:00"}));
  EXPECT_EQ(ValuesOf(series), (Values{1017, 1018, 1019, 1020, 1021, 1022, 1023, 0, 1, 2, 3, 4}));
}

TEST(HourSeries, TakesAllHoursFromYesterdayAfterMidnight) {
  const Series series = HourSeries(0, HoursFrom(1000), HoursFrom(0));
  EXPECT_EQ(LabelsOf(series), (Labels{"12:00", "13:00", "14:00", "15:00", "16:00", "17:00", "18:00",
                                      "19:00", "20:00", "21:00", "22:00", "23:00"}));
  EXPECT_EQ(ValuesOf(series),
            (Values{1012, 1013, 1014, 1015, 1016, 1017, 1018, 1019, 1020, 1021, 1022, 1023}));
}

TEST(HourSeries, EndsWithTheHourBeforeTheCurrentOne) {
  for (int now = 0; now < 24; ++now) {
    SCOPED_TRACE(now);
    Labels labels;
    Values values;
    for (int ago = 12; ago > 0; --ago) {
      const int hour = (now + 24 - ago) % 24;
      labels.push_back(std::to_string(hour) + ":00");
      values.push_back(static_cast<float>(ago > now ? 1000 + hour : hour));
    }
    const Series series = HourSeries(now, HoursFrom(1000), HoursFrom(0));
    EXPECT_EQ(LabelsOf(series), labels);
    EXPECT_EQ(ValuesOf(series), values);
  }
}

TEST(HourSeries, ShowsMissingHoursAsZero) {
  EXPECT_EQ(ValuesOf(HourSeries(5, {}, {{3, 1.5F}})),
            (Values{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1.5F, 0}));
}

TEST(DaySeries, RunsFromWednesdayToTuesdayOnAWednesday) {
  EXPECT_EQ(LabelsOf(DaySeries(Day("2024-05-08"), {})),
            (Labels{"Wed", "Thu", "Fri", "Sat", "Sun", "Mon", "Tue"}));
}

TEST(DaySeries, HoldsSevenDaysBeforeTodayOldestFirst) {
  PowerLedger ledger;
  for (int day = 1; day <= 9; ++day) {
    ledger[Day("2024-05-0" + std::to_string(day))] = static_cast<float>(day);
  }
  EXPECT_EQ(ValuesOf(DaySeries(Day("2024-05-09"), ledger)), (Values{2, 3, 4, 5, 6, 7, 8}));
}

TEST(DaySeries, EndsWithYesterday) {
  EXPECT_EQ(ValuesOf(DaySeries(Day("2024-05-08"), {{Day("2024-05-07"), 2.5F}})),
            (Values{0, 0, 0, 0, 0, 0, 2.5F}));
}

TEST(DaySeries, AddsNoEntriesToTheLedger) {
  const PowerLedger ledger;
  EXPECT_EQ(ValuesOf(DaySeries(Day("2024-05-08"), ledger)), Values(7, 0.0F));
  EXPECT_TRUE(ledger.empty());
}

TEST(MonthSeries, RunsFromSeptemberAcrossTheYearInFebruary) {
  const PowerLedger ledger{{Day("2023-02-10"), 900.0F}, {Day("2023-09-10"), 1.0F},
                           {Day("2023-12-31"), 4.0F},   {Day("2024-01-01"), 5.0F},
                           {Day("2024-02-01"), 6.0F},   {Day("2023-08-31"), 900.0F}};
  const Series series = MonthsAt("2024-02-10", ledger);
  EXPECT_EQ(LabelsOf(series), (Labels{"Sep", "Oct", "Nov", "Dec", "Jan", "Feb"}));
  EXPECT_EQ(ValuesOf(series), (Values{1, 0, 0, 4, 5, 6}));
}

TEST(MonthSeries, IncludesTheFirstAndTheLastDayOfEachMonth) {
  PowerLedger ledger;
  const char* const days[] = {"2023-11-30", "2023-12-01", "2023-12-31", "2024-01-01", "2024-01-31",
                              "2024-02-01", "2024-02-29", "2024-03-01", "2024-03-31", "2024-04-01",
                              "2024-04-30", "2024-05-01", "2024-05-31", "2024-06-01"};
  float value = 1.0F;
  for (const char* day : days) {
    ledger[Day(day)] = value;
    value *= 2.0F;
  }
  EXPECT_EQ(ValuesOf(MonthsAt("2024-05-08", ledger)), (Values{6, 24, 96, 384, 1536, 6144}));
}

TEST(MonthSeries, EndsWithTheSumOfTheCurrentMonth) {
  const PowerLedger ledger{{Day("2024-05-01"), 1.5F}, {Day("2024-05-08"), 2.0F}};
  EXPECT_EQ(ValuesOf(MonthsAt("2024-05-08", ledger)), (Values{0, 0, 0, 0, 0, 3.5F}));
}

TEST(MonthSeries, AddsInTheOrderOfTheDays) {
  // In 32 bits 16777216 + 1 + 1 stays 16777216, while 1 + 1 + 16777216 is 16777218.
  const PowerLedger falling{
      {Day("2024-05-01"), 16777216.0F}, {Day("2024-05-02"), 1.0F}, {Day("2024-05-03"), 1.0F}};
  EXPECT_EQ(MonthsAt("2024-05-08", falling).back().energyWh, 16777216.0F);
  const PowerLedger rising{
      {Day("2024-05-01"), 1.0F}, {Day("2024-05-02"), 1.0F}, {Day("2024-05-03"), 16777216.0F}};
  EXPECT_EQ(MonthsAt("2024-05-08", rising).back().energyWh, 16777218.0F);
}

TEST(MonthSeries, MislabelsAShorterMonthLateInTheMonth) {
  const Series series = MonthsAt("2023-03-31", {{Day("2023-02-14"), 7.0F}});
  EXPECT_EQ(LabelsOf(series), (Labels{"Oct", "Dec", "Dec", "Jan", "Mar", "Mar"}));
  EXPECT_EQ(ValuesOf(series), (Values{0, 0, 0, 0, 7, 0}));
}

TEST(Series, HasAllEntriesForAClockOutsideTheCalendar) {
  const DateTime none = LocalTimeOf(-1);
  EXPECT_EQ(HourSeries(none.tm_hour, {}, {}).size(), 12U);
  EXPECT_EQ(DaySeries(none, {}).size(), 7U);
  EXPECT_EQ(MonthSeries(none, none, {}).size(), 6U);
}

TEST(HourSeries, ShowsNegativeHours) {
  EXPECT_EQ(ValuesOf(HourSeries(2, {{23, -1.5F}}, {{1, -2.5F}})),
            (Values{0, 0, 0, 0, 0, 0, 0, 0, 0, -1.5F, 0, -2.5F}));
}

TEST(DaySeries, ShowsNegativeDays) {
  EXPECT_EQ(ValuesOf(DaySeries(Day("2024-05-08"), {{Day("2024-05-07"), -2.5F}})),
            (Values{0, 0, 0, 0, 0, 0, -2.5F}));
}

TEST(MonthSeries, AddsNegativeDays) {
  const PowerLedger ledger{{Day("2024-05-01"), -7.0F}, {Day("2024-05-02"), 4.5F}};
  EXPECT_EQ(ValuesOf(MonthsAt("2024-05-08", ledger)), (Values{0, 0, 0, 0, 0, -2.5F}));
}
