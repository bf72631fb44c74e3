#include <gtest/gtest.h>

#include <random>

#include "base/calendar.h"
#include "base/date_time_text.h"
#include "base/local_calendar.h"
#include "base/zones.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::Text;

namespace {

class DateTimeOrderInZone : public testing::TestWithParam<TestSupport::ZoneYears> {
 protected:
  void SetUp() override { TestSupport::UseZone(GetParam().zone); }
  void TearDown() override { TestSupport::UseZone("UTC0"); }

  int Random(int least, int most) {
    return std::uniform_int_distribution<int>(least, most)(random_);
  }

  DateTime RandomTime() {
    const int year = Random(GetParam().firstYear, GetParam().lastYear) - 1900;
    return {Random(0, 60), Random(0, 59), Random(0, 23), Random(1, 31), Random(0, 11), year, 0, 0,
            Random(-1, 1)};
  }

  std::mt19937 random_{3};
};

}  // namespace

TEST_P(DateTimeOrderInZone, ComparesTheInstantsOfTimesDaysApart) {
  for (int i = 0; i < 600; ++i) {
    const DateTime left = RandomTime();
    DateTime right = left;
    right.tm_isdst = Random(-1, 1);
    right.tm_hour = Random(0, 23);
    // Over the date line, an instant can depend on the call before.
    right.tm_mday += Random(GetParam().skipsADay ? 3 : 0, 6);
    // Written with a day of its month, as far as there is one.
    if (right.tm_mday > 31) {
      right.tm_mday -= 31;
      right.tm_mon = (right.tm_mon + 1) % 12;
    }
    if (i % 3 == 0) right = RandomTime();
    ASSERT_EQ(left < right, InstantOf(left) < InstantOf(right))
        << Text(left) << ", " << Text(right);
    ASSERT_EQ(right < left, InstantOf(right) < InstantOf(left))
        << Text(left) << ", " << Text(right);
  }
}

INSTANTIATE_TEST_SUITE_P(Zones, DateTimeOrderInZone, testing::ValuesIn(TestSupport::kZones),
                         TestSupport::NameOfZone());
