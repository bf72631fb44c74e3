#include "base/date_text.h"

#include <gtest/gtest.h>

#include "base/date_time_text.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::LocalTime;

namespace {

// A Friday, the 61st day of a leap year.
DateTime Afternoon() {
  DateTime time = LocalTime(2024, 3, 1, 14, 5, 9);
  time.tm_wday = 5;
  time.tm_yday = 60;
  return time;
}

struct FormatCase {
  const char* format;
  const char* text;
};

struct FieldCase {
  const char* label;
  std::int32_t DateTime::*field;
  std::int32_t value;
};

const FieldCase kOutsideTheCalendar[] = {
    {"second below", &DateTime::tm_sec, -1},       {"second above", &DateTime::tm_sec, 61},
    {"minute below", &DateTime::tm_min, -1},       {"minute above", &DateTime::tm_min, 60},
    {"hour below", &DateTime::tm_hour, -1},        {"hour above", &DateTime::tm_hour, 24},
    {"day below", &DateTime::tm_mday, 0},          {"day above", &DateTime::tm_mday, 32},
    {"month below", &DateTime::tm_mon, -1},        {"month above", &DateTime::tm_mon, 12},
    {"year below", &DateTime::tm_year, -1901},     {"year above", &DateTime::tm_year, 8100},
    {"weekday below", &DateTime::tm_wday, -1},     {"weekday above", &DateTime::tm_wday, 7},
    {"day of year below", &DateTime::tm_yday, -1}, {"day of year above", &DateTime::tm_yday, 366},
    {"far above", &DateTime::tm_mon, 2147483647},
};

}  // namespace

TEST(FormatDateTime, PrintsEveryFormatInUse) {
  const FormatCase cases[] = {
      {kDateFormat, "2024-03-01"},
      {kSampleTimeFormat, "2024-03-01T14:05:09"},
      {kTimeStampFormat, "2024-03-01:14:05:09"},
      {"%a", "Fri"},
      {"%b", "Mar"},
  };
  for (const auto& [format, text] : cases) EXPECT_EQ(FormatDateTime(Afternoon(), format), text);
}

TEST(FormatDateTime, DoesNotExpandTAfterAnEscapedPercent) {
  EXPECT_EQ(FormatDateTime(Afternoon(), "%%T=%T"), "%T=14:05:09");
  EXPECT_EQ(FormatDateTime(Afternoon(), "T%TT"), "T14:05:09T");
}

TEST(FormatDateTime, IsEmptyForAFieldOutsideTheCalendar) {
  for (const auto& [label, field, value] : kOutsideTheCalendar) {
    DateTime time = Afternoon();
    time.*field = value;
    EXPECT_EQ(FormatDateTime(time, kDateFormat), "") << label;
    EXPECT_EQ(FormatDateWide(time), L"") << label;
    EXPECT_EQ(FormatLogTime(time), "") << label;
  }
}

TEST(FormatDateTime, IsEmptyForAValueInitialisedTime) {
  EXPECT_EQ(FormatDateTime(DateTime{}, kDateFormat), "");
}

TEST(FormatDateTime, IsEmptyForATextAbove511Bytes) {
  EXPECT_EQ(FormatDateTime(Afternoon(), std::string(511, 'x').c_str()), std::string(511, 'x'));
  EXPECT_EQ(FormatDateTime(Afternoon(), std::string(512, 'x').c_str()), "");
}

TEST(FormatDateTime, IsEmptyWithoutAFormat) {
  EXPECT_EQ(FormatDateTime(Afternoon(), nullptr), "");
  EXPECT_EQ(FormatDateTime(Afternoon(), ""), "");
}

TEST(WriteTimeStamp, WritesTheDateBeforeTheTimeOfDay) {
  DateBuffer buffer;
  EXPECT_EQ(WriteTimeStamp(Afternoon(), buffer), "2024-03-01:14:05:09");
}

TEST(WriteDate, WritesTheDate) {
  DateBuffer buffer;
  EXPECT_EQ(WriteDate(Afternoon(), buffer), "2024-03-01");
}

TEST(WriteTimeStamp, IsEmptyForAFieldOutsideTheCalendar) {
  DateBuffer buffer;
  for (const auto& [label, field, value] : kOutsideTheCalendar) {
    DateTime time = Afternoon();
    time.*field = value;
    EXPECT_EQ(WriteTimeStamp(time, buffer), "") << label;
    EXPECT_EQ(WriteDate(time, buffer), "") << label;
  }
}

TEST(WriteTimeStamp, WritesWhatTheCLibraryPrints) {
  DateBuffer buffer;
  for (const std::int32_t year : {-1900, -1899, -1801, -1800, -901, -900, 0, 124, 1100, 8099}) {
    for (std::int32_t i = 0; i < 366; ++i) {
      const DateTime time{i % 61, (i * 7) % 60, i % 24, i % 31 + 1, i % 12, year, i % 7, i, i % 2};
      ASSERT_EQ(WriteTimeStamp(time, buffer), FormatDateTime(time, kTimeStampFormat)) << year;
      ASSERT_EQ(WriteDate(time, buffer), FormatDateTime(time, kDateFormat)) << year;
    }
  }
}

TEST(FormatDateWide, PrintsTheDate) {
  EXPECT_EQ(FormatDateWide(Afternoon()), L"2024-03-01");
  EXPECT_EQ(FormatDateWide(LocalTime(1999, 12, 31)), L"1999-12-31");
}

TEST(FormatLogTime, PrintsTheTimeBeforeTheDate) {
  EXPECT_EQ(FormatLogTime(Afternoon()), "14:05:09 01-03-2024");
}
