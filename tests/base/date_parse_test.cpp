#include "base/date_text.h"

#include <gtest/gtest.h>

#include "base/date_time_text.h"
#include "base/local_calendar.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::Text;

namespace {

constexpr char kUnfilled[] = "1900-01-00 00:00:00 dst 0";

std::string Parsed(const char* text, const char* format) {
  DateTime result = TestSupport::LocalTime(2001, 2, 3, 4, 5, 6, 1);
  return Text(ParseDateTime(result, text, format));
}

struct ParseCase {
  const char* text;
  const char* result;
};

}  // namespace

TEST(ParseDateTime, ResultIsAllZeroForANullArgument) {
  EXPECT_EQ(Parsed(nullptr, kDateFormat), kUnfilled);
  EXPECT_EQ(Parsed("2024-03-01", nullptr), kUnfilled);
  DateTime result = TestSupport::LocalTime(2001, 2, 3);
  result.tm_wday = 6;
  ParseDateTime(result, nullptr, kDateFormat);
  EXPECT_EQ(result.tm_wday, 0);
  EXPECT_EQ(result.tm_yday, 0);
}

TEST(ParseDateTime, FillsTheWeekdayAndTheDayOfTheYear) {
  DateTime result;
  EXPECT_EQ(&ParseDateTime(result, "2024-03-01", "%Y-%m-%d"), &result);
  EXPECT_EQ(Text(result), "2024-03-01 00:00:00 dst 0");
  EXPECT_EQ(result.tm_wday, 5);
  EXPECT_EQ(result.tm_yday, 60);
}

TEST(ParseDateTime, ReadsEveryFormatInUse) {
  EXPECT_EQ(Parsed("2024-03-01T14:05:09", kSampleTimeFormat), "2024-03-01 14:05:09 dst 0");
  EXPECT_EQ(Parsed("2024-03-01:14:05:09", kTimeStampFormat), "2024-03-01 14:05:09 dst 0");
  EXPECT_EQ(Parsed("2024-03-01T14:05:09.123Z", kSampleTimeFormat), "2024-03-01 14:05:09 dst 0");
}

TEST(ParseDateTime, NormalisesADayPastTheEndOfTheMonth) {
  EXPECT_EQ(Parsed("2023-02-31", kDateFormat), "2023-03-03 00:00:00 dst 0");
  EXPECT_EQ(Parsed("2024-02-30T23:59:59", kSampleTimeFormat), "2024-03-01 23:59:59 dst 0");
}

TEST(ParseDateTime, LeavesFieldsAfterTheFirstMismatchAtZero) {
  const ParseCase cases[] = {
      {"2023-07-01T12:34", "2023-07-01 12:34:00 dst 0"},
      {"2023-07-01T", "2023-07-01 00:00:00 dst 0"},
      {"2023-07-01 12:34:56", "2023-07-01 00:00:00 dst 0"},
      {"2023-07-01T25:00:00", "2023-07-01 00:00:00 dst 0"},
      // Day 0 of July is the last day of June.
      {"2023-07", "2023-06-30 00:00:00 dst 0"},
      {"2023-07-xx", "2023-06-30 00:00:00 dst 0"},
      {"", kUnfilled},
      {"garbage", kUnfilled},
      {"-1", kUnfilled},
  };
  for (const auto& [text, result] : cases)
    EXPECT_EQ(Parsed(text, kSampleTimeFormat), result) << text;
}

TEST(ParseDateTime, KeepsTheFieldsOfADateOutsideTheCalendar) {
  EXPECT_EQ(Parsed("1931-02-30", kDateFormat), "1931-02-30 00:00:00 dst 0");
  EXPECT_EQ(Parsed("9999-12-31", kDateFormat), "9999-12-31 00:00:00 dst 0");
}

TEST(ParseDateTime, AcceptsATextOfManyMegabytes) {
  const std::string text = "2024-03-01T14:05:09" + std::string(8U << 20, '9');
  DateTime result;
  EXPECT_EQ(Text(ParseDateTime(result, text.c_str(), kDateFormat)), "2024-03-01 00:00:00 dst 0");
}

TEST(ParseDateTime, SkipsAnyNumberOfLeadingBlanks) {
  const std::string blanks = std::string(100'000, ' ') + "\t\n";
  EXPECT_EQ(Parsed((blanks + "2024-03-01:02:10:46").c_str(), kTimeStampFormat),
            "2024-03-01 02:10:46 dst 0");
  EXPECT_EQ(Parsed(blanks.c_str(), kTimeStampFormat), Parsed("", kTimeStampFormat));
}

TEST(ParseWideDateTime, ReadsTheTimeStampFormatOfTheReport) {
  DateTime result;
  EXPECT_EQ(&ParseWideDateTime(result, L"2024-03-01:14:05:09"), &result);
  EXPECT_EQ(Text(result), "2024-03-01 14:05:09 dst 0");
  EXPECT_EQ(result.tm_wday, 5);
  EXPECT_EQ(Text(ParseWideDateTime(result, L"2024-03-01T14:05:09")), "2024-03-01 00:00:00 dst 0");
  EXPECT_EQ(Text(ParseWideDateTime(result, nullptr)), kUnfilled);
}
