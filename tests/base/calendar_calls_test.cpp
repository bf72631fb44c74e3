#include <dlfcn.h>
#include <gtest/gtest.h>
#include <time.h>

#include "base/calendar.h"
#include "base/literal_times.h"
#include "base/zones.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

int calls = 0;

DateTime Day(int year, int month, int day) { return TestSupport::LocalTime(year, month, day); }

}  // namespace

/// Counts the calls and passes them on to the C library.
extern "C" time_t mktime(std::tm* time) {
  static const auto real = reinterpret_cast<time_t (*)(std::tm*)>(dlsym(RTLD_NEXT, "mktime"));
  ++calls;
  return real(time);
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

TEST(CalendarCalls, AreThoseOfOneStretchForARepeatedDate) {
  TimeReader reader(kDateFormat);
  calls = 0;
  for (int i = 0; i < 10; ++i) static_cast<void>(reader.Read("2025-07-15"));
  EXPECT_EQ(calls, kCallsOfAStretch);
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
