#include "base/calendar.h"

#include <windows.h>

#include <time.h>

#include <thread>

#include <gtest/gtest.h>

#include "base/date_text.h"
#include "base/date_time_text.h"
#include "base/local_calendar.h"
#include "import_patch.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::Text;

namespace {

// In UTC: 2026-11-20 00:00:01 and 23:59:59, a Friday.
constexpr __time64_t kFirstSecond = 1795132801;
constexpr __time64_t kLastSecond = 1795219199;

__time64_t g_now = 0;

__time64_t FakeTime(__time64_t* now) {
  if (now != nullptr) *now = g_now;
  return g_now;
}

class CurrentTime : public testing::Test {
 protected:
  const Standin::ImportPatch clock_{"_time64", &FakeTime};
};

}  // namespace

TEST_F(CurrentTime, ComesFromTheSystemClock) {
  g_now = kLastSecond;
  EXPECT_EQ(CurrentInstant(), 1795219199);
  EXPECT_EQ(Text(*GetCurrentDateTime()), "2026-11-20 23:59:59 dst 0");
  EXPECT_EQ(GetCurrentDateTime()->tm_wday, 5);
  EXPECT_EQ(GetCurrentDateTime()->tm_yday, 323);
}

TEST_F(CurrentTime, DateIsMidnightAllDayLong) {
  g_now = kFirstSecond;
  const DateTime early = *GetCurrentDate();
  g_now = kLastSecond;
  const DateTime late = *GetCurrentDate();
  EXPECT_EQ(Text(early), "2026-11-20 00:00:00 dst 0");
  EXPECT_EQ(Text(late), "2026-11-20 00:00:00 dst 0");
  EXPECT_EQ(late.tm_wday, 5);
  EXPECT_EQ(late.tm_yday, 323);
}

TEST_F(CurrentTime, ReturnsAStaticThatTheNextCallOverwrites) {
  g_now = kFirstSecond;
  DateTime* const time = GetCurrentDateTime();
  DateTime* const date = GetCurrentDate();
  EXPECT_NE(time, date);
  g_now = kLastSecond + 86400;
  EXPECT_EQ(GetCurrentDateTime(), time);
  EXPECT_EQ(Text(*time), "2026-11-21 23:59:59 dst 0");
  EXPECT_EQ(Text(*date), "2026-11-20 00:00:00 dst 0");
  EXPECT_EQ(GetCurrentDate(), date);
  EXPECT_EQ(Text(*date), "2026-11-21 00:00:00 dst 0");
}

TEST_F(CurrentTime, ReturnsADifferentStaticOnEachThread) {
  g_now = kFirstSecond;
  const DateTime* const time = GetCurrentDateTime();
  const DateTime* const date = GetCurrentDate();
  bool finished = false;
  std::thread other([&] {
    g_now = kLastSecond + 86400;
    EXPECT_NE(GetCurrentDateTime(), time);
    EXPECT_NE(GetCurrentDate(), date);
    finished = true;
  });
  other.join();
  ASSERT_TRUE(finished);
  EXPECT_EQ(Text(*time), "2026-11-20 00:00:01 dst 0");
  EXPECT_EQ(Text(*date), "2026-11-20 00:00:00 dst 0");
}

TEST_F(CurrentTime, SetsFieldsToMinusOneForAClockOutsideTheCalendar) {
  g_now = -1;
  EXPECT_EQ(GetCurrentDateTime()->tm_year, -1);
  EXPECT_EQ(GetCurrentDateTime()->tm_hour, -1);
  EXPECT_EQ(GetCurrentDate()->tm_year, -1);
  EXPECT_EQ(GetCurrentDate()->tm_hour, 0);
}

namespace {

int g_instants = 0;

__time64_t CountInstant(struct tm*) {
  ++g_instants;
  return 0;
}

}  // namespace

TEST(ParseDateTime, ComputesNoInstantForNullArguments) {
  const Standin::ImportPatch patch("_mktime64", &CountInstant);
  g_instants = 0;
  DateTime time;
  ParseDateTime(time, nullptr, kDateFormat);
  ParseDateTime(time, "2024-03-01", nullptr);
  ParseWideDateTime(time, nullptr);
  EXPECT_EQ(g_instants, 0);
  ParseDateTime(time, "2024-03-01", kDateFormat);
  EXPECT_EQ(g_instants, 1);
}
