#include "base/time_fields.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <utility>

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

/// Year, month and day, hour, minute and second as read; the year counts from 1900 and the month
/// from 0.
using Fields = std::array<std::int32_t, 6>;

struct Outcome {
  TimeFields kind;
  Fields fields;
  bool operator==(const Outcome&) const = default;
};

template <typename Char>
Outcome Read(const Char* text, char separator = 'T') {
  DateTime time;
  const TimeFields kind = ReadTimeFields(text, separator, time);
  return {kind, {time.tm_year, time.tm_mon, time.tm_mday, time.tm_hour, time.tm_min, time.tm_sec}};
}

/// The day of the week and of the year.
std::pair<std::int32_t, std::int32_t> DaysOf(DateTime time) {
  FillDayOfWeekAndYear(time);
  return {time.tm_wday, time.tm_yday};
}

Outcome Some(const Fields& fields) { return {TimeFields::kSome, fields}; }

}  // namespace

TEST(ReadTimeFields, ReadsDateAndTimeOfDay) {
  EXPECT_EQ(Read("2024-03-01T14:05:09"), Some({124, 2, 1, 14, 5, 9}));
  EXPECT_EQ(Read(L"2024-03-01:14:05:09", ':'), Some({124, 2, 1, 14, 5, 9}));
  EXPECT_EQ(Read("2024-03-01T14:05:09", '\0'), Some({124, 2, 1, 0, 0, 0}));
}

TEST(ReadTimeFields, AcceptsFieldsWithFewerDigits) {
  EXPECT_EQ(Read("24-3-1T4:5:9"), Some({-1876, 2, 1, 4, 5, 9}));
}

TEST(ReadTimeFields, SkipsBlanksAtTheStartAndOneBeforeTheDay) {
  EXPECT_EQ(Read(" \t\n\v\f\r2024-03- 1T14:05:09"), Some({124, 2, 1, 14, 5, 9}));
  EXPECT_EQ(Read("2024-03-  1T14:05:09"), Some({124, 2, 0, 0, 0, 0}));
  EXPECT_EQ(Read("2024- 03-01T14:05:09"), Some({124, 0, 0, 0, 0, 0}));
  EXPECT_EQ(Read("2024-03-01T 4:05:09"), Some({124, 2, 1, 0, 0, 0}));
}

TEST(ReadTimeFields, AcceptsTheLetterBetweenDateAndTimeInEitherCase) {
  EXPECT_EQ(Read("2024-03-01t14:05:09"), Some({124, 2, 1, 14, 5, 9}));
  // The colon and the character that differs from it by the bit of the case.
  EXPECT_EQ(Read("2024-03-01\x1A"
                 "14:05:09",
                 ':'),
            Some({124, 2, 1, 0, 0, 0}));
}

TEST(ReadTimeFields, KeepsTheFieldsInFrontOfAFault) {
  EXPECT_EQ(Read("2024-13-01T14:05:09"), Some({124, 0, 0, 0, 0, 0}));
  EXPECT_EQ(Read("2024-00-01T14:05:09"), Some({124, 0, 0, 0, 0, 0}));
  EXPECT_EQ(Read("2024-12-32T14:05:09"), Some({124, 11, 0, 0, 0, 0}));
  EXPECT_EQ(Read("2024-12-00T14:05:09"), Some({124, 11, 0, 0, 0, 0}));
  EXPECT_EQ(Read("2024-12-31T24:05:09"), Some({124, 11, 31, 0, 0, 0}));
  EXPECT_EQ(Read("2024-12-31T23:60:09"), Some({124, 11, 31, 23, 0, 0}));
  EXPECT_EQ(Read("2024-12-31T23:59:61"), Some({124, 11, 31, 23, 59, 0}));
  EXPECT_EQ(Read("2024-12-31T23:59:60"), Some({124, 11, 31, 23, 59, 60}));
  EXPECT_EQ(Read("2024-12"), Some({124, 11, 0, 0, 0, 0}));
  EXPECT_EQ(Read("2024x"), Some({124, 0, 0, 0, 0, 0}));
}

TEST(ReadTimeFields, IgnoresWhatFollowsTheTime) {
  EXPECT_EQ(Read("2024-03-01T14:05:099"), Some({124, 2, 1, 14, 5, 9}));
  EXPECT_EQ(Read("2024-03-01T14:05:09.5Z"), Some({124, 2, 1, 14, 5, 9}));
}

TEST(ReadTimeFields, ReadsNothingWithoutAYear) {
  for (const char* text : {"", "  ", "-1", "x2024-03-01"}) {
    EXPECT_EQ(Read(text), (Outcome{TimeFields::kNone, {}})) << text;
  }
}

TEST(ReadTimeFields, TakesNarrowCharactersBeyondAsciiForNeitherBlankNorDigit) {
  EXPECT_EQ(Read("\xA0"
                 "2024-03-01T14:05:09"),
            (Outcome{TimeFields::kNone, {}}));
  EXPECT_EQ(Read("2024-03\xB2"), Some({124, 2, 0, 0, 0, 0}));
  EXPECT_EQ(Read("2024-03-\xA0"
                 "1T14:05:09"),
            Some({124, 2, 0, 0, 0, 0}));
}

TEST(FillDayOfWeekAndYear, CountsFromTheFirstDayOfTheYear) {
  // Thursday and Tuesday.
  EXPECT_EQ(DaysOf({.tm_mday = 29, .tm_mon = 1, .tm_year = 124}), std::pair(4, 59));
  EXPECT_EQ(DaysOf({.tm_mday = 31, .tm_mon = 11, .tm_year = 124}), std::pair(2, 365));
  // The day before Monday the 1st of January.
  EXPECT_EQ(DaysOf({.tm_mday = 0, .tm_mon = 0, .tm_year = 124}), std::pair(0, -1));
}

TEST(FillDayOfWeekAndYear, IsOneWeekdayTooLateBeforeMarchOfTheYearZero) {
  // The 1st of March of the year 0 is a Wednesday, 306 days before the first Monday of the year 1.
  EXPECT_EQ(DaysOf({.tm_mday = 1, .tm_mon = 2, .tm_year = -1900}), std::pair(3, 60));
  EXPECT_EQ(DaysOf({.tm_mday = 29, .tm_mon = 1, .tm_year = -1900}), std::pair(3, 59));
  EXPECT_EQ(DaysOf({.tm_mday = 1, .tm_mon = 0, .tm_year = -1900}), std::pair(0, 0));
  EXPECT_EQ(DaysOf({.tm_mday = 1, .tm_mon = 0, .tm_year = -1899}), std::pair(1, 0));
}

TEST(ReadTimeFields, LeavesWideCharactersBeyondAsciiToTheLibrary) {
  EXPECT_EQ(Read(L"\x3000"
                 L"2024-03-01:14:05:09",
                 ':')
                .kind,
            TimeFields::kForeign);
  EXPECT_EQ(Read(L"2024-03-0\xFF11:14:05:09", ':').kind, TimeFields::kForeign);
  // Beyond the end of the time they do not matter.
  EXPECT_EQ(Read("2024-03-01T14:05:09 \xA0"), Some({124, 2, 1, 14, 5, 9}));
}
