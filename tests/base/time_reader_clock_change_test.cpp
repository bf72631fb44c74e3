#include <gtest/gtest.h>

#include "base/literal_times.h"
#include "base/zone_days.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::Autumn;
using TestSupport::ChangesOfThisZone;
using TestSupport::Spring;

namespace {

/// Reads every second of the date of `day` and compares it with the literal algorithm.
void ExpectLiteralDay(DateTime day) {
  TimeReader reader(kSampleTimeFormat);
  for (int second = 0; second < 86400; ++second) {
    day.tm_hour = second / 3600;
    day.tm_min = second / 60 % 60;
    day.tm_sec = second % 60;
    const std::string text = TestSupport::SampleTimeText(day);
    const LocalTime time = reader.Read(text.c_str());
    const LocalTime literal = TestSupport::LiteralTime(text.c_str(), kSampleTimeFormat);
    ASSERT_TRUE(TestSupport::IsSame(time, literal))
        << text << "\n  read:    " << TestSupport::Text(time)
        << "\n  literal: " << TestSupport::Text(literal);
  }
}

/// The instant read last from the times of day `texts` on the date of `day`.
std::int64_t LastInstant(const DateTime& day, std::initializer_list<const char*> texts) {
  TimeReader reader(kSampleTimeFormat);
  std::int64_t instant = -1;
  for (const char* text : texts) {
    instant = reader.Read((FormatDateTime(day, kDateFormat) + "T" + text).c_str()).instant;
  }
  return instant;
}

}  // namespace

TEST(TimeReader, ReadsEverySecondOfTheDayOnWhichClocksGoForward) { ExpectLiteralDay(Spring(0)); }

TEST(TimeReader, ReadsEverySecondOfTheDayOnWhichClocksGoBack) { ExpectLiteralDay(Autumn(0)); }

TEST(TimeReader, ReadsEverySecondOfADayOfSummer) { ExpectLiteralDay(Spring(1)); }

TEST(TimeReader, ReadsEverySecondOfADayOfWinter) { ExpectLiteralDay(Spring(-1)); }

TEST(TimeReader, ReadsTheLastHourOfASummerDayOneDayLater) {
  // Clocks change at 02:00 local time; the day after the next midnight begins 22 hours later.
  const std::int64_t dayAfter = ChangesOfThisZone().springInstant + (21 + 24) * 3600;
  EXPECT_EQ(LastInstant(Spring(1), {"10:00:00", "23:00:00", "23:10:00", "23:30:00"}),
            dayAfter + 23 * 3600 + 1800);
  EXPECT_EQ(LastInstant(Spring(1), {"23:30:00", "22:00:00", "22:10:00", "22:30:00"}),
            dayAfter - 5400);
}

TEST(TimeReader, ReadsEveryThirdHourOfAYearLikeTheLiteralAlgorithm) {
  TimeReader reader(kTimeStampFormat);
  for (std::int64_t instant = 1735689600; instant < 1735689600 + 365 * 86400; instant += 10'799) {
    const std::string text = FormatDateTime(LocalTimeOf(instant), kTimeStampFormat);
    ASSERT_TRUE(TestSupport::IsSame(reader.Read(text.c_str()),
                                    TestSupport::LiteralTime(text.c_str(), kTimeStampFormat)))
        << text;
  }
}
