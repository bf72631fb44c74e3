#include "base/time_reader.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "base/literal_times.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::IsSame;
using TestSupport::LiteralTime;
using TestSupport::Text;

// In UTC; time_reader_clock_change_test.cpp and time_reader_zones_test.cpp cover other zones.

namespace {

// 2024-03-01 was a Friday, the 61st day of the year; 1709251200 is its first second.
constexpr std::int64_t kMidnight = 1709251200;

/// The result of reading `text` `count` times.
std::string ReadTimes(const char* format, const char* text, int count) {
  TimeReader reader(format);
  for (int i = 1; i < count; ++i) static_cast<void>(reader.Read(text));
  return Text(reader.Read(text));
}

void ExpectLiteral(TimeReader& reader, const std::string& text, const char* format) {
  const LocalTime time = reader.Read(text.c_str());
  EXPECT_TRUE(IsSame(time, LiteralTime(text.c_str(), format)))
      << '"' << text << "\" as " << format << "\n  read:    " << Text(time)
      << "\n  literal: " << Text(LiteralTime(text.c_str(), format));
}

void ExpectLiteral(TimeReader& reader, const std::wstring& text) {
  const LocalTime time = reader.Read(text.c_str());
  EXPECT_TRUE(IsSame(time, LiteralTime(text.c_str())))
      << testing::PrintToString(text) << "\n  read:    " << Text(time)
      << "\n  literal: " << Text(LiteralTime(text.c_str()));
}

}  // namespace

TEST(TimeReader, ReadsTheFieldsAndTheInstantOfEachFormat) {
  for (const int count : {1, 2, 3}) {
    EXPECT_EQ(ReadTimes(kSampleTimeFormat, "2024-03-01T14:05:09", count),
              "2024-03-01 14:05:09 dst 0, day 5, 60 of the year, instant 1709301909");
    EXPECT_EQ(ReadTimes(kTimeStampFormat, "2024-03-01:14:05:09", count),
              "2024-03-01 14:05:09 dst 0, day 5, 60 of the year, instant 1709301909");
    EXPECT_EQ(ReadTimes(kDateFormat, "2024-03-01", count),
              "2024-03-01 00:00:00 dst 0, day 5, 60 of the year, instant 1709251200");
  }
}

TEST(TimeReader, ReadsEverySecondOfADayInOrder) {
  TimeReader reader(kSampleTimeFormat);
  DateTime day = TestSupport::LocalTime(2024, 3, 1);
  for (int second = 0; second < 86400; ++second) {
    day.tm_hour = second / 3600;
    day.tm_min = second / 60 % 60;
    day.tm_sec = second % 60;
    const LocalTime time = reader.Read(TestSupport::SampleTimeText(day).c_str());
    ASSERT_EQ(time.instant, kMidnight + second);
    ASSERT_EQ(Text(time.fields), Text(day));
    ASSERT_EQ(time.fields.tm_wday, 5);
    ASSERT_EQ(time.fields.tm_yday, 60);
  }
}

TEST(TimeReader, NormalisesADayAfterTheEndOfTheMonth) {
  for (const int count : {1, 2, 3}) {
    EXPECT_EQ(ReadTimes(kSampleTimeFormat, "2024-02-30T00:00:01", count),
              "2024-03-01 00:00:01 dst 0, day 5, 60 of the year, instant 1709251201");
  }
}

TEST(TimeReader, KeepsDatesApartThatShareAnEntry) {
  // Twice the dates that it keeps, all of them three times.
  TimeReader reader(kDateFormat);
  for (int round = 0; round < 3; ++round) {
    for (int day = 0; day < 256; ++day) {
      const DateTime date = LocalTimeOf(kMidnight + day * 86400);
      const LocalTime time = reader.Read(TestSupport::SampleTimeText(date).c_str());
      ASSERT_EQ(time.instant, kMidnight + day * 86400) << day;
      ASSERT_EQ(Text(time.fields), Text(date)) << day;
    }
  }
}

TEST(TimeReader, IgnoresWhatFollowsTheTime) {
  for (const char* rest : {"0", ".123Z", " ", "x", "-01"}) {
    const std::string time = std::string("2024-03-01T14:05:09") + rest;
    EXPECT_EQ(ReadTimes(kSampleTimeFormat, time.c_str(), 1),
              "2024-03-01 14:05:09 dst 0, day 5, 60 of the year, instant 1709301909");
    TimeReader reader(kSampleTimeFormat);
    ExpectLiteral(reader, time, kSampleTimeFormat);
  }
}

TEST(TimeReader, ReadsEachFieldAtTheEndsOfItsRangeLikeTheLiteralAlgorithm) {
  const char* texts[] = {
      "2024-01-31T00:00:00", "2024-12-31T23:59:59", "2024-00-15T12:00:00", "2024-13-15T12:00:00",
      "2024-05-00T12:00:00", "2024-05-01T12:00:00", "2024-05-31T12:00:00", "2024-05-32T12:00:00",
      "2024-05-15T23:00:00", "2024-05-15T24:00:00", "2024-05-15T12:59:00", "2024-05-15T12:60:00",
      "2024-05-15T12:00:59", "2024-05-15T12:00:60", "2024-05-15T12:00:61", "2023-02-29T12:00:00",
      "0000-01-01T00:00:00", "0000-02-29T12:00:00", "0000-03-01T12:00:00", "0000-12-31T12:00:00",
      "0001-01-01T00:00:00", "1900-01-01T00:00:00", "1969-12-31T23:59:59", "1970-01-01T00:00:00",
      "1970-01-01T00:00:01", "3000-12-31T23:59:59", "3001-01-01T00:00:00", "3001-01-31T00:00:00",
      "9999-12-31T23:59:59",
  };
  TimeReader reader(kSampleTimeFormat);
  for (int round = 0; round < 3; ++round) {
    for (const char* text : texts) ExpectLiteral(reader, text, kSampleTimeFormat);
  }
}

TEST(TimeReader, ReadsTextsInOtherFormsLikeTheLiteralAlgorithm) {
  const char* texts[] = {
      "",
      "2",
      "2024",
      "2024-",
      "2024-3-1",
      "2024-03",
      "2024-03-",
      "2024-03-0",
      "2024-03-1",
      "24-03-01",
      "02024-03-1",
      "2024-03-01T",
      "2024-03-01t",
      "garbage",
      "-1",
      "+024-03-01",
      "2024/03/01",
      "2024-03- 1",
      "2024-03-01x14",
      "2024-0 -01",
      " 2024-03-01T14:05:09",
      "\t\n2024-03-01T14:05:09",
      "2024-03-01t14:05:09",
      "2024-03-01 14:05:09",
      "2024-03-01:14:05:09",
      "2024-03-01T14-05:09",
      "2024-03-01T14:05-09",
      "2024-03-01T14:05:0",
      "2024-03-01T14:05:",
      "2024-03-01T14:05",
      "2024-03-01T4:5:9",
      "2024-03-01T14: 5:09",
      "2024-03-01T1/:05:09",
      "2024-03-01T14:05:9x",
      "2024-03-01T14:0:09",
      "\xB2\x30\x32\x34-03-01T14:05:09",
      "\xA0"
      "2024-03-01T14:05:09",
      "2024-03-\xA0"
      "1T14:05:09",
      "0000",
      "0000-02",
  };
  for (const char* format : {kSampleTimeFormat, kTimeStampFormat, kDateFormat}) {
    TimeReader reader(format);
    for (const char* text : texts) ExpectLiteral(reader, text, format);
  }
}

TEST(TimeReader, ReadsNoTextAsNoTime) {
  TimeReader reader(kTimeStampFormat);
  EXPECT_TRUE(IsSame(reader.Read(static_cast<const char*>(nullptr)), LocalTime{}));
  EXPECT_TRUE(IsSame(reader.Read(static_cast<const wchar_t*>(nullptr)), LocalTime{}));
}

TEST(TimeReader, ReadsRandomTextsLikeTheLiteralAlgorithm) {
  // A valid time with up to four characters replaced, removed or inserted.
  std::mt19937 random(1);
  const std::string characters = "0123456789-:T t./x\t\x85\xA0\xB2\xFF";
  TimeReader reader(kSampleTimeFormat);
  for (int i = 0; i < 20'000; ++i) {
    std::string text = "2024-03-01T14:05:09";
    for (auto changes = random() % 5; changes > 0; --changes) {
      const std::size_t place = random() % text.size();
      const char character = characters[random() % characters.size()];
      const auto kind = random() % 4;
      if (kind == 0) {
        text.erase(place, 1);
      } else {
        text.replace(place, kind == 1 ? 0 : 1, 1, character);
      }
    }
    ExpectLiteral(reader, text, kSampleTimeFormat);
  }
}

TEST(TimeReader, ReadsWideTimeStampsLikeTheLiteralAlgorithm) {
  const std::wstring texts[] = {
      L"2024-03-01:14:05:09",
      L"2024-03-01:14:05:10",
      L"2024-03-01:14:05:11x",
      L"2024-02-30:23:59:59",
      L"2024-03-01T14:05:09",
      L"2024-03-01:14:05:60",
      L" 2024-03-01:14:05:09",
      L"2024-03-01:1",
      L"",
      L"9999-03-01:14:05:09",
      L"2024\u201303-01",
      L"\uFF12\uFF10\uFF12\uFF14-03-01:14:05:09",
      // Low bytes that are digits.
      L"\u0132024-03-01:14:05:09",
      L"\u0132\u0130\u0132\u0134-03-01:14:05:09",
  };
  TimeReader reader(kTimeStampFormat);
  for (const std::wstring& text : texts) ExpectLiteral(reader, text);
  EXPECT_EQ(Text(reader.Read(L"2024-03-01:14:05:09")),
            "2024-03-01 14:05:09 dst 0, day 5, 60 of the year, instant 1709301909");
}

TEST(TimeReader, ReadsWideAndNarrowTextsOfOneDay) {
  TimeReader reader(kTimeStampFormat);
  EXPECT_EQ(reader.Read(L"2024-03-01:00:00:01").instant, kMidnight + 1);
  EXPECT_EQ(reader.Read("2024-03-01:00:00:02").instant, kMidnight + 2);
  EXPECT_EQ(reader.Read(L"2024-03-01:22:59:59").instant, kMidnight + 82799);
}
