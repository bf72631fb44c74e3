// The hours and the daily pass around the days on which clocks change.

#include <gtest/gtest.h>

#include <string>

#include "base/zone_days.h"
#include "collection/ledger_fixture.h"
#include "ledger/fake_days.h"

using namespace TestSupport;

namespace {

class GetDailyPowerConsumption : public LedgerFixture {
 protected:
  std::wstring Hours() {
    std::wstring result;
    helper.GetDailyPowerConsumption(result);
    return result;
  }
};

using CalculateDailyPowerConsumption = DailyPassFixture;

}  // namespace

TEST_F(GetDailyPowerConsumption, SkipsTheSpringDayJustAfterTheFollowingMidnight) {
  const std::string changeDay = DateOf(Spring(0));
  WriteSamples(changeDay, {"09:00:00", "20:00:00", "20:10:00"});
  WriteSamples(DateOf(Spring(-1)), {"09:00:00", "20:00:00", "20:05:00"});
  FakeClock::Set(DateOf(Spring(1)) + " 00:10:00");
  EXPECT_NE(Hours().find(L"{\"Time\":\"20:00\",\"Value\":3.409090995788574}"), std::wstring::npos);
  FakeClock::Set(DateOf(Spring(1)) + " 01:10:00");
  EXPECT_NE(Hours().find(L"{\"Time\":\"20:00\",\"Value\":6.818181991577148}"), std::wstring::npos);
}

TEST_F(CalculateDailyPowerConsumption, WritesTheAutumnDayTwiceWhenTheFileHasIt) {
  const std::string today = DateOf(Autumn(0));
  WriteWholeFile(LedgerPath(), R"([{"Key":")" + today + R"(","Value":12.5}])");
  WriteOneInterval(today);
  FakeClock::Set(today + " 12:00:00");
  helper.CalculateDailyPowerConsumption();
  EXPECT_TRUE(LedgerText().ends_with(R"({"Key":")" + today + R"(","Value":12.5},{"Key":")" + today +
                                     R"(","Value":3.409090995788574}])"))
      << LedgerText().substr(LedgerText().size() - 120);
}

TEST_F(CalculateDailyPowerConsumption, OmitsTheSpringDayInThePassOfTheNextDay) {
  WriteOneInterval(DateOf(Spring(0)));
  WriteOneInterval(DateOf(Spring(-1)));
  WriteOneInterval(DateOf(Spring(-2)));
  FakeClock::Set(DateOf(Spring(1)) + " 12:00:00");
  helper.CalculateDailyPowerConsumption();
  EXPECT_EQ(Booked(DateOf(Spring(0))), -1.0F);
  EXPECT_EQ(Booked(DateOf(Spring(-1))), kThreeWh);
  EXPECT_EQ(Booked(DateOf(Spring(-2))), kThreeWh);
  // One step back from today reaches the day before the spring day, which is therefore the
  // neighbour.
  EXPECT_TRUE(FileExists(SamplePath(DateOf(Spring(0)))));
  EXPECT_TRUE(FileExists(SamplePath(DateOf(Spring(-1)))));
  EXPECT_FALSE(FileExists(SamplePath(DateOf(Spring(-2)))));
}
