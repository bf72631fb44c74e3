#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/calendar.h"
#include "base/date_text.h"
#include "base/date_time_text.h"
#include "base/local_calendar.h"
#include "base/zone_days.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::ChangesOfThisZone;
using TestSupport::LocalTime;
using TestSupport::Text;

namespace {

/// A local time with the given summer time flag; the day may run over the end of the month.
DateTime SpringDay(int plusDays = 0, int hour = 0, int minute = 0, int dst = 0) {
  return LocalTime(2025, ChangesOfThisZone().springMonth, ChangesOfThisZone().springDay + plusDays,
                   hour, minute, 0, dst);
}

DateTime AutumnDay(int plusDays = 0, int hour = 0, int minute = 0, int dst = 0) {
  return LocalTime(2025, ChangesOfThisZone().autumnMonth, ChangesOfThisZone().autumnDay + plusDays,
                   hour, minute, 0, dst);
}

/// The text of a time whose day may lie outside its month.
std::string Normal(DateTime time) {
  const int hour = time.tm_hour;
  const int dst = time.tm_isdst;
  time.tm_hour = 12;
  time.tm_isdst = -1;
  MakeInstant(time);
  time.tm_hour = hour;
  time.tm_isdst = dst;
  return Text(time);
}

/// The instant of a local time `plusDays` days after the day of the change, by plain arithmetic:
/// every day since 1970 has 86400 seconds.
std::int64_t FromMidnightUtc(std::int64_t changeInstant, int plusDays, int hour, int minute,
                             int offsetHours) {
  const std::int64_t midnight = changeInstant - changeInstant % 86400;
  return midnight + plusDays * 86400 + (hour - offsetHours) * 3600 + minute * 60;
}

/// The same for a time in winter, and in summer.
std::int64_t Winter(std::int64_t change, int plusDays, int hour, int minute) {
  return FromMidnightUtc(change, plusDays, hour, minute, ChangesOfThisZone().utcOffsetHours);
}

std::int64_t Summer(std::int64_t change, int plusDays, int hour, int minute) {
  return FromMidnightUtc(change, plusDays, hour, minute, ChangesOfThisZone().utcOffsetHours + 1);
}

DateTime ParsedSampleTime(DateTime day, const std::string& time) {
  DateTime result;
  return ParseDateTime(result, (FormatDateTime(day, kDateFormat) + "T" + time).c_str(),
                       kSampleTimeFormat);
}

DateTime ParsedKey(const DateTime& day) {
  DateTime result;
  return ParseDateTime(result, FormatDateTime(day, kDateFormat).c_str(), kDateFormat);
}

std::vector<std::string> Walk(DateTime day, int step, int count) {
  std::vector<std::string> days;
  for (int i = 0; i < count; ++i) {
    DateTime next;
    AddDays(day, next, step);
    day = next;
    days.push_back(Text(day));
  }
  return days;
}

}  // namespace

TEST(LocalTimeOf, ChangesClocksAtTheInstantsOfTheZone) {
  const TestSupport::ClockChanges& zone = ChangesOfThisZone();
  EXPECT_EQ(Text(LocalTimeOf(zone.springInstant - 1)).substr(11), "01:59:59 dst 0");
  EXPECT_EQ(Text(LocalTimeOf(zone.springInstant)), Text(SpringDay(0, 3, 0, 1)));
  EXPECT_EQ(Text(LocalTimeOf(zone.autumnInstant - 1)).substr(11),
            zone.utcOffsetHours > 0 ? "02:59:59 dst 1" : "01:59:59 dst 1");
  EXPECT_EQ(LocalTimeOf(zone.autumnInstant).tm_mday, zone.autumnDay);
  EXPECT_EQ(LocalTimeOf(zone.autumnInstant).tm_isdst, 0);
}

TEST(MakeInstant, HonoursTheSummerTimeFlagOfItsArgument) {
  const std::int64_t spring = ChangesOfThisZone().springInstant;
  DateTime summerNoonAsWinter = SpringDay(1, 12);
  EXPECT_EQ(MakeInstant(summerNoonAsWinter), Winter(spring, 1, 12, 0));
  EXPECT_EQ(Text(summerNoonAsWinter), Normal(SpringDay(1, 13, 0, 1)));

  DateTime winterNoonAsSummer = SpringDay(-1, 12, 0, 1);
  EXPECT_EQ(MakeInstant(winterNoonAsSummer), Summer(spring, -1, 12, 0));
  EXPECT_EQ(Text(winterNoonAsSummer), Normal(SpringDay(-1, 11, 0, 0)));
}

TEST(AddDays, SkipsTheSpringChangeDayBackward) {
  // From the midnight after the change, 86400 seconds lead to 23:00 of the day before it.
  const std::vector<std::string> expected = {Normal(SpringDay(1, 0, 0, 1)), Normal(SpringDay(-1)),
                                             Normal(SpringDay(-2))};
  EXPECT_EQ(Walk(SpringDay(2, 0, 0, 1), -1, 3), expected);
}

TEST(AddDays, VisitsTheSpringChangeDayForward) {
  const std::vector<std::string> expected = {Normal(SpringDay(0)), Normal(SpringDay(1, 0, 0, 1)),
                                             Normal(SpringDay(2, 0, 0, 1))};
  EXPECT_EQ(Walk(SpringDay(-1), 1, 3), expected);
}

TEST(AddDays, StaysOnTheAutumnChangeDayForOneStepForward) {
  // 86400 seconds after its midnight it is 23:00 of the same day.
  const std::vector<std::string> expected = {Normal(AutumnDay(0, 0, 0, 1)), Normal(AutumnDay(0)),
                                             Normal(AutumnDay(1)), Normal(AutumnDay(2))};
  EXPECT_EQ(Walk(AutumnDay(-1, 0, 0, 1), 1, 4), expected);
}

TEST(AddDays, VisitsTheAutumnChangeDayBackward) {
  const std::vector<std::string> expected = {Normal(AutumnDay(1)), Normal(AutumnDay(0, 0, 0, 1)),
                                             Normal(AutumnDay(-1, 0, 0, 1))};
  EXPECT_EQ(Walk(AutumnDay(2), -1, 3), expected);
}

TEST(AddDays, GoesBackEightDatesForAWeekAcrossTheSpringChange) {
  DateTime from = SpringDay(3, 0, 0, 1);
  DateTime result;
  AddDays(from, result, -7);
  EXPECT_EQ(Text(result), Normal(SpringDay(-5)));
}

TEST(AddDays, GoesBackSevenDatesForAWeekAcrossTheAutumnChange) {
  DateTime from = AutumnDay(3);
  DateTime result;
  AddDays(from, result, -7);
  EXPECT_EQ(Text(result), Normal(AutumnDay(-4, 0, 0, 1)));
  EXPECT_EQ(result.tm_hour, 0);
}

TEST(ShiftKeepingHour, MakesTheSameStepsAsAddDays) {
  EXPECT_EQ(Text(ShiftKeepingHour(SpringDay(1, 0, 0, 1), -kSecondsPerDay)), Normal(SpringDay(-1)));
  EXPECT_EQ(Text(ShiftKeepingHour(AutumnDay(0, 0, 0, 1), kSecondsPerDay)), Normal(AutumnDay(0)));
}

TEST(ParseDateTime, ReadsTheLastHourOfASummerDayOneDayLater) {
  // The text is read as winter time, which is one hour later in summer time: 00:30 of the next day.
  // The hour is then restored.
  const DateTime time = ParsedSampleTime(SpringDay(1), "23:30:00");
  EXPECT_EQ(Text(time), Normal(SpringDay(2, 23, 30, 1)));
  EXPECT_EQ(InstantOf(time), Summer(ChangesOfThisZone().springInstant, 2, 23, 30));
}

TEST(ParseDateTime, ReadsTheOtherHoursOfASummerDayUnchanged) {
  for (int hour = 0; hour < 23; ++hour) {
    const std::string text = (hour < 10 ? "0" : "") + std::to_string(hour) + ":59:59";
    const DateTime time = ParsedSampleTime(SpringDay(1), text);
    EXPECT_EQ(InstantOf(time), Summer(ChangesOfThisZone().springInstant, 1, hour, 59) + 59) << hour;
    EXPECT_EQ(time.tm_isdst, 1) << hour;
  }
}

TEST(ParseDateTime, ReadsEveryHourOfAWinterDayUnchanged) {
  for (int hour = 0; hour < 24; ++hour) {
    const std::string text = (hour < 10 ? "0" : "") + std::to_string(hour) + ":00:00";
    const DateTime time = ParsedSampleTime(SpringDay(-1), text);
    EXPECT_EQ(InstantOf(time), Winter(ChangesOfThisZone().springInstant, -1, hour, 0)) << hour;
    EXPECT_EQ(time.tm_isdst, 0) << hour;
  }
}

TEST(ParseDateTime, ReadsTheSkippedHourAsSummerTime) {
  // 02:30 in winter time is 03:30 in summer time. The restored hour makes it 02:30 in summer time,
  // which is the instant of 01:30 in winter time.
  const DateTime time = ParsedSampleTime(SpringDay(), "02:30:00");
  EXPECT_EQ(Text(time), Text(SpringDay(0, 2, 30, 1)));
  EXPECT_EQ(InstantOf(time), Winter(ChangesOfThisZone().springInstant, 0, 1, 30));
}

TEST(ParseDateTime, ReadsTheRepeatedHourAsItsSecondPassage) {
  const int hour = ChangesOfThisZone().utcOffsetHours > 0 ? 2 : 1;
  const DateTime time = ParsedSampleTime(AutumnDay(), "0" + std::to_string(hour) + ":30:00");
  EXPECT_EQ(Text(time), Text(AutumnDay(0, hour, 30, 0)));
  EXPECT_EQ(InstantOf(time), Winter(ChangesOfThisZone().autumnInstant, 0, hour, 30));
}

TEST(ParseDateTime, ReadsTheLastHourOfBothChangeDays) {
  // The spring day ends in summer time, so its last hour moves by a day; the autumn day's does not.
  EXPECT_EQ(Text(ParsedSampleTime(SpringDay(), "23:30:00")), Normal(SpringDay(1, 23, 30, 1)));
  EXPECT_EQ(Text(ParsedSampleTime(AutumnDay(), "23:30:00")), Normal(AutumnDay(0, 23, 30, 0)));
  // Moved to the autumn day, it keeps the summer time flag of that day's first hour.
  EXPECT_EQ(Text(ParsedSampleTime(AutumnDay(-1), "23:30:00")), Normal(AutumnDay(0, 23, 30, 1)));
}

TEST(ParseDateTime, ReadsADateAsItsLocalMidnight) {
  EXPECT_EQ(Text(ParsedKey(SpringDay())), Text(SpringDay()));
  EXPECT_EQ(Text(ParsedKey(SpringDay(1))), Normal(SpringDay(1, 0, 0, 1)));
  EXPECT_EQ(Text(ParsedKey(AutumnDay())), Text(AutumnDay(0, 0, 0, 1)));
  EXPECT_EQ(Text(ParsedKey(AutumnDay(1))), Normal(AutumnDay(1)));
}

TEST(DateTimeOrder, TodayDiffersFromItsParsedKeyOnAChangeDay) {
  // At noon the summer time flag is that after the change, while midnight lies before the change.
  const DateTime springToday = SpringDay(0, 0, 0, 1);
  EXPECT_TRUE(springToday < ParsedKey(SpringDay()));
  const DateTime autumnToday = AutumnDay(0, 0, 0, 0);
  EXPECT_TRUE(ParsedKey(AutumnDay()) < autumnToday);
}

TEST(DateTimeOrder, ComparesTheInstantsOfNeighbouringDays) {
  // Midnight of summer time is 23:00 of the day before in winter time.
  EXPECT_TRUE(SpringDay(-2, 0, 0, 1) < SpringDay(-3, 23, 30));
  EXPECT_FALSE(SpringDay(-3, 23, 30) < SpringDay(-2, 0, 0, 1));
}

TEST(DateTimeOrder, TodayEqualsItsParsedKeyOnOtherDays) {
  for (const int plusDays : {-1, 1}) {
    const DateTime today = SpringDay(plusDays, 0, 0, plusDays > 0 ? 1 : 0);
    const DateTime key = ParsedKey(SpringDay(plusDays));
    EXPECT_FALSE(today < key);
    EXPECT_FALSE(key < today);
  }
}
