#include "base/calendar.h"

#include <gtest/gtest.h>

#include <map>

#include "base/date_time_text.h"
#include "base/local_calendar.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::LocalTime;
using TestSupport::Text;

// In UTC; clock_change_test.cpp covers zones with clock changes.

TEST(LocalTimeOf, SplitsAnInstant) {
  // 2024-03-01 was a Friday; 1709251200 is its first second.
  const DateTime time = LocalTimeOf(1709251200 + 3661);
  EXPECT_EQ(Text(time), "2024-03-01 01:01:01 dst 0");
  EXPECT_EQ(time.tm_wday, 5);
  EXPECT_EQ(time.tm_yday, 60);
  EXPECT_EQ(Text(LocalTimeOf(0)), "1970-01-01 00:00:00 dst 0");
}

TEST(LocalTimeOf, SetsAllFieldsToMinusOneOutsideTheCalendar) {
  for (const std::int64_t instant :
       {std::int64_t{-1}, std::int64_t{1} << 60, INT64_MIN, INT64_MAX}) {
    const DateTime time = LocalTimeOf(instant);
    for (const auto field : {time.tm_sec, time.tm_min, time.tm_hour, time.tm_mday, time.tm_mon,
                             time.tm_year, time.tm_wday, time.tm_yday, time.tm_isdst}) {
      EXPECT_EQ(field, -1) << instant;
    }
  }
}

TEST(MakeInstant, NormalisesInPlace) {
  DateTime time = LocalTime(2023, 2, 31, 30, 61, 61);
  // 2023-03-03 is 1677801600; 30:61:61 more is one day and 07:02:01.
  EXPECT_EQ(MakeInstant(time), 1677801600 + 86400 + 7 * 3600 + 2 * 60 + 1);
  EXPECT_EQ(Text(time), "2023-03-04 07:02:01 dst 0");
  EXPECT_EQ(time.tm_wday, 6);
  EXPECT_EQ(time.tm_yday, 62);
}

TEST(MakeInstant, ReturnsMinusOneOutsideTheCalendarAndLeavesItsArgument) {
  for (const int year : {1, 1895, 1968, 3900, 9999}) {
    DateTime time = LocalTime(year, 14, 45, 30);
    EXPECT_EQ(MakeInstant(time), -1) << year;
    EXPECT_EQ(time.tm_mon, 13) << year;
    EXPECT_EQ(time.tm_mday, 45) << year;
    EXPECT_EQ(time.tm_hour, 30) << year;
  }
  DateTime none{-1, -1, -1, -1, -1, -1, -1, -1, -1};
  EXPECT_EQ(MakeInstant(none), -1);
}

TEST(InstantOf, DoesNotNormaliseItsArgument) {
  const DateTime time = LocalTime(2023, 2, 31);
  EXPECT_EQ(InstantOf(time), 1677801600);
  EXPECT_EQ(time.tm_mday, 31);
}

TEST(DateTimeOrder, ComparesInstantsAndDoesNotNormaliseKeys) {
  const DateTime overrun = LocalTime(2023, 2, 31);
  const DateTime plain = LocalTime(2023, 3, 3);
  EXPECT_FALSE(overrun < plain);
  EXPECT_FALSE(plain < overrun);
  EXPECT_TRUE(LocalTime(2023, 3, 2) < overrun);
  EXPECT_TRUE(overrun < LocalTime(2023, 3, 3, 0, 0, 1));

  const std::map<DateTime, int> days{{overrun, 1}, {LocalTime(2023, 3, 4), 2}};
  EXPECT_EQ(days.at(plain), 1);
  EXPECT_EQ(Text(days.begin()->first), "2023-02-31 00:00:00 dst 0");
}

TEST(DateTimeOrder, ComparesFieldsOutsideTheirRangeByTheirInstants) {
  // Each is written as another day than it is.
  EXPECT_TRUE(LocalTime(2024, 3, 20) < LocalTime(2024, 3, 1, 24 * 30));
  EXPECT_TRUE(LocalTime(2024, 3, 20) < LocalTime(2024, 3, 1, 0, 1440 * 30));
  EXPECT_TRUE(LocalTime(2024, 3, 20) < LocalTime(2024, 3, 1, 0, 0, 86400 * 30));
  EXPECT_TRUE(LocalTime(2024, 3, 20) < LocalTime(2024, 3, 60));
  EXPECT_TRUE(LocalTime(2024, 3, 20) < LocalTime(2023, 16, 1));
  EXPECT_TRUE(LocalTime(2024, 3, 1, -24 * 30) < LocalTime(2024, 2, 20));
  EXPECT_TRUE(LocalTime(2024, 3, 1, 0, -1440 * 30) < LocalTime(2024, 2, 20));
  EXPECT_TRUE(LocalTime(2024, 3, 1, 0, 0, -86400 * 30) < LocalTime(2024, 2, 20));
  EXPECT_TRUE(LocalTime(2024, 3, -30) < LocalTime(2024, 2, 20));
  EXPECT_TRUE(LocalTime(2025, -3, 1) < LocalTime(2024, 12, 20));
}

TEST(DateTimeOrder, DoesNotOrderTimesOutsideTheCalendar) {
  const DateTime early = LocalTime(1901, 1, 1);
  const DateTime late = LocalTime(3500, 1, 1);
  EXPECT_FALSE(early < late);
  EXPECT_FALSE(late < early);
  EXPECT_FALSE(early < LocalTime(1902, 1, 1));
  EXPECT_FALSE(LocalTime(3400, 1, 1) < late);
  EXPECT_TRUE(late < LocalTime(2024, 3, 1));
  EXPECT_FALSE(LocalTime(2024, 3, 1) < late);
  EXPECT_TRUE(late < LocalTime(1970, 1, 1));
  EXPECT_TRUE(LocalTime(3002, 1, 1) < LocalTime(2999, 12, 31));
}

TEST(DateTimeOrder, ComparesDatesOfEveryDistance) {
  const DateTime day = LocalTime(2024, 2, 27);
  for (int distance = 1; distance < 800; ++distance) {
    const DateTime other = LocalTimeOf(InstantOf(day) + distance * kSecondsPerDay);
    EXPECT_TRUE(day < other) << distance;
    EXPECT_FALSE(other < day) << distance;
  }
}

TEST(AddDays, GoesBackAWeekAndKeepsHourZero) {
  DateTime from = LocalTime(2024, 3, 4);
  DateTime result = LocalTime(1999, 9, 9, 9, 9, 9, 1);
  EXPECT_EQ(&AddDays(from, result, -7), &result);
  EXPECT_EQ(Text(result), "2024-02-26 00:00:00 dst 0");
  EXPECT_EQ(result.tm_wday, 1);
}

TEST(AddDays, NormalisesItsArgumentAndRestoresTheHourInTheResult) {
  DateTime from = LocalTime(2024, 2, 28, 49);
  DateTime result;
  AddDays(from, result, 1);
  EXPECT_EQ(Text(from), "2024-03-01 01:00:00 dst 0");
  EXPECT_EQ(Text(result), "2024-03-02 49:00:00 dst 0");
}

TEST(AddDays, AcceptsOneObjectAsArgumentAndResult) {
  DateTime day = LocalTime(2024, 12, 31, 5);
  AddDays(day, day, 1);
  EXPECT_EQ(Text(day), "2025-01-01 05:00:00 dst 0");
}

TEST(AddDays, LeavesTheCalendarForExtremeNumbersOfDays) {
  DateTime from = LocalTime(2024, 3, 1, 3);
  DateTime result;
  AddDays(from, result, 2147483647);
  EXPECT_EQ(result.tm_year, -1);
  EXPECT_EQ(result.tm_hour, 3);
  AddDays(from, result, -2147483647 - 1);
  EXPECT_EQ(result.tm_year, -1);
}

TEST(ShiftKeepingHour, MovesBySecondsAndKeepsTheHour) {
  EXPECT_EQ(Text(ShiftKeepingHour(LocalTime(2024, 3, 1), -86400)), "2024-02-29 00:00:00 dst 0");
  EXPECT_EQ(Text(ShiftKeepingHour(LocalTime(2024, 3, 1, 22), 3 * 3600)),
            "2024-03-02 22:00:00 dst 0");
}
