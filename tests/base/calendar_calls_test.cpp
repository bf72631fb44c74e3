#include <dlfcn.h>
#include <gtest/gtest.h>
#include <time.h>

#include "base/calendar.h"
#include "base/literal_times.h"
#include "base/zones.h"
#include "ledger/ledger_cursor.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

int calls = 0;        // of mktime
int conversions = 0;  // by localtime_r

DateTime Day(int year, int month, int day) { return TestSupport::LocalTime(year, month, day); }

}  // namespace

// They count the calls and pass them on to the C library.
extern "C" time_t mktime(std::tm* time) {
  static const auto real = reinterpret_cast<time_t (*)(std::tm*)>(dlsym(RTLD_NEXT, "mktime"));
  ++calls;
  return real(time);
}

extern "C" std::tm* localtime_r(const time_t* instant, std::tm* time) {
  static const auto real =
      reinterpret_cast<std::tm* (*)(const time_t*, std::tm*)>(dlsym(RTLD_NEXT, "localtime_r"));
  ++conversions;
  return real(instant, time);
}

namespace {

/// How often the C library is asked when every second of `date` is read.
int CallsForADay(const char* zone, DateTime date, const char* format) {
  TestSupport::UseZone(zone);
  TimeReader reader(format);
  calls = 0;
  for (int second = 0; second < 86400; ++second) {
    date.tm_hour = second / 3600;
    date.tm_min = second / 60 % 60;
    date.tm_sec = second % 60;
    DateBuffer buffer{};
    std::string text(WriteTimeStamp(date, buffer));
    if (format == kSampleTimeFormat) text[10] = 'T';
    static_cast<void>(reader.Read(text.c_str()));
  }
  const int result = calls;
  TestSupport::UseZone("UTC0");
  return result;
}

/// The fields of an instant in UTC.
DateTime FromUtc(std::int64_t instant) {
  const time_t seconds = instant;
  std::tm fields{};
  gmtime_r(&seconds, &fields);
  return FromTm(fields);
}

constexpr int kCallsOfAStretch = 6;  // Two for its first text and for each of its ends.

}  // namespace

TEST(CalendarCalls, AreTwoForATimeAlone) {
  TimeReader reader(kSampleTimeFormat);
  calls = 0;
  static_cast<void>(reader.Read("2025-07-15T12:00:00"));
  EXPECT_EQ(calls, 2);
}

TEST(CalendarCalls, AreThoseOfTwoStretchesForADay) {
  for (const char* format : {kSampleTimeFormat, kTimeStampFormat}) {
    for (const DateTime& day : {Day(2025, 1, 15), Day(2025, 7, 15)}) {
      EXPECT_EQ(CallsForADay("Europe/Berlin", day, format), 2 * kCallsOfAStretch);
    }
  }
}

TEST(CalendarCalls, AreTwoForARepeatedDate) {
  TimeReader reader(kDateFormat);
  calls = 0;
  for (int i = 0; i < 10; ++i) static_cast<void>(reader.Read("2025-07-15"));
  EXPECT_EQ(calls, 2);
}

TEST(CalendarCalls, AreSixForTheDatesBetweenTwoClockChanges) {
  // Two for the first date, two at the end of a run as long as the longest one before, and two
  // where this one is longer. The first run grows from a day to 7, 14, 28, 56 and 112 days; it has
  // 89 or 67 of them, so the second run has three ends.
  TestSupport::UseZone("Europe/Berlin");
  constexpr int kYears = 10;
  constexpr int kRuns = 2 * kYears + 1;
  constexpr int kDates = 365 * kYears + 3;
  for (const bool isBackwards : {false, true}) {
    TimeReader reader(kDateFormat);
    calls = 0;
    for (int i = 0; i < kDates; ++i) {
      const DateTime date =
          FromUtc(1'577'836'800 + (isBackwards ? kDates - 1 - i : i) * kSecondsPerDay);
      DateBuffer buffer{};
      static_cast<void>(reader.Read(std::string(WriteDate(date, buffer)).c_str()));
    }
    EXPECT_LE(calls, (2 + 5 * 2) + (2 + 3 * 2) + (kRuns - 2) * (2 + 2 * 2));
  }
  TestSupport::UseZone("UTC0");
}

TEST(CalendarCalls, AreTwoConversionsForTwoDatesFarFromALongRun) {
  TestSupport::UseZone("Europe/Berlin");
  for (const std::string month : {"2010-01-", "2030-01-"}) {
    TimeReader reader(kDateFormat);
    for (int day = 0; day < 300; ++day) {
      DateBuffer buffer{};
      const DateTime date = FromUtc(1'577'836'800 + day * kSecondsPerDay);
      static_cast<void>(reader.Read(std::string(WriteDate(date, buffer)).c_str()));
    }
    conversions = 0;
    static_cast<void>(reader.Read((month + "01").c_str()));
    static_cast<void>(reader.Read((month + "02").c_str()));
    EXPECT_EQ(conversions, 2) << month;
  }
  TestSupport::UseZone("UTC0");
}

TEST(CalendarCalls, AreTwoForEachOfDatesAWeekApart) {
  TimeReader reader(kDateFormat);
  calls = 0;
  for (const char* date : {"2025-07-01", "2025-07-08", "2025-07-15", "2025-07-01"}) {
    static_cast<void>(reader.Read(date));
  }
  EXPECT_EQ(calls, 4 * 2);
}

TEST(CalendarCalls, AreNoneForDaysEnteredInFrontOfEachOther) {
  PowerLedger ledger;
  LedgerCursor cursor(ledger);
  calls = 0;
  for (int day = 100; day > 0; --day) {
    const std::int64_t instant = day * kSecondsPerDay;
    cursor.FindOrInsert({LocalTimeOf(instant), instant}) = 1.0F;
  }
  EXPECT_EQ(ledger.size(), 100U);
  EXPECT_EQ(calls, 0);
}

TEST(CalendarCalls, AreOneForDaysEnteredBetweenTwoFarDays) {
  const std::int64_t later = 2200 * kSecondsPerDay;
  PowerLedger ledger{{LocalTimeOf(2000 * kSecondsPerDay), 1.0F}, {LocalTimeOf(later), 2.0F}};
  LedgerCursor cursor(ledger);
  ASSERT_NE(cursor.Find({LocalTimeOf(later), later}), nullptr);
  calls = 0;
  for (int day = 2150; day > 2100; --day) {
    const std::int64_t instant = day * kSecondsPerDay;
    cursor.FindOrInsert({LocalTimeOf(instant), instant}) = 1.0F;
  }
  EXPECT_EQ(calls, 1);  // that of the first day, asked for once
}

TEST(CalendarCalls, AreThoseOfHalfHoursWhereDaylightTimeIsHalfAnHour) {
  // Two stretches of the day are found uneven, then each half hour is even.
  EXPECT_LE(CallsForADay("Australia/Lord_Howe", Day(2025, 1, 15), kSampleTimeFormat),
            (2 + 48) * kCallsOfAStretch);
}

TEST(CalendarCalls, AreThoseOfMinutesWhereClocksChangeInAHalfHour) {
  // At 00:01 the clocks go forward to 01:01.
  EXPECT_LE(CallsForADay("America/St_Johns", Day(2010, 3, 14), kSampleTimeFormat),
            (2 + 48 + 60) * kCallsOfAStretch);
}

TEST(CalendarCalls, AreNoneForTheOrderOfDatesAWeekApart) {
  calls = 0;
  EXPECT_TRUE(Day(2025, 7, 15) < Day(2025, 7, 22));
  EXPECT_FALSE(Day(2025, 7, 22) < Day(2025, 7, 15));
  EXPECT_EQ(calls, 0);
}
