#include "ledger/day_energy.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>

#include "ledger/fake_days.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace TestSupport;

namespace {

using Hours = std::map<int, float>;

constexpr char kDay[] = "2024-05-06";

std::string At(const std::string& time, const std::string& power = "36",
               const std::string& type = "PCM_SENSOR") {
  return Sample(std::string(kDay) + "T" + time, power, type);
}

Hours HoursOfText(const std::string& json) {
  return HourlyEnergyWh(Day(kDay), FakeDays{{kDay, json}}.Reader());
}

Hours HoursOf(const std::vector<std::string>& elements) { return HoursOfText(List(elements)); }

}  // namespace

TEST(HourlyEnergy, IsEmptyWithoutAnArrayOfSamples) {
  for (const char* json : {"[]", "{}", "null", "1", "", "no JSON"}) {
    EXPECT_EQ(HoursOfText(json), Hours()) << json;
  }
}

TEST(HourlyEnergy, IsEmptyForAListThatEndsInTheMiddle) {
  const std::string list =
      List({At("10:00:00"), At("10:05:00"), At("11:00:00"), At("11:05:00"), At("11:10:00")});
  EXPECT_EQ(HoursOfText(list).size(), 2U);
  EXPECT_EQ(HoursOfText(list.substr(0, list.size() - 1)), Hours());
}

TEST(HourlyEnergy, ReadsOnlyTheDayItself) {
  FakeDays days{{kDay, List({At("10:00:00"), At("10:05:00"), At("10:10:00")})}};
  EXPECT_EQ(HourlyEnergyWh(Day(kDay), days.Reader()), (Hours{{10, kWhOf300Seconds}}));
  EXPECT_EQ(days.ReadDates(), std::vector<std::string>{kDay});
}

TEST(HourlyEnergy, IsEmptyForOneElement) { EXPECT_EQ(HoursOf({At("10:00:00")}), Hours()); }

TEST(HourlyEnergy, IsEmptyForTwoElements) {
  EXPECT_EQ(HoursOf({At("10:00:00"), At("10:05:00")}), Hours());
}

TEST(HourlyEnergy, BooksOnlyTheSecondIntervalOfThreeElementsInOneHour) {
  EXPECT_EQ(HoursOf({At("10:00:00", "999"), At("10:05:00"), At("10:10:00", "999")}),
            (Hours{{10, kWhOf300Seconds}}));
}

TEST(HourlyEnergy, AddsInOrderInFloatAndDividesTheSumOnce) {
  // The same samples as in DayEnergy.AddsInOrderInFloatAndDividesTheSumOnce.
  const Hours hours = HoursOf({At("09:00:00"), At("10:00:00", "108.0"), At("10:01:58", "11.6"),
                               At("10:08:00", "70.3"), At("10:15:24", "54.5"),
                               At("10:21:23", "87.3"), At("10:25:37", "62.3"), At("10:33:30")});
  ASSERT_EQ(hours.size(), 1U);
  EXPECT_EQ(std::bit_cast<std::uint32_t>(hours.at(10)), 0x4216B64FU);
}

TEST(HourlyEnergy, IsNegativeForNegativePower) {
  EXPECT_EQ(HoursOf({At("10:00:00"), At("10:05:00", "-36"), At("10:10:00")}),
            (Hours{{10, -kWhOf300Seconds}}));
}

TEST(HourlyEnergy, BooksNothingBetweenSamplesAtTheSameTime) {
  EXPECT_EQ(HoursOf({At("10:00:00"), At("10:05:00"), At("10:05:00"), At("10:10:00")}),
            (Hours{{10, kWhOf300Seconds}}));
}

TEST(HourlyEnergy, EndsAnHourWhenTheClockShowsAnotherHour) {
  // One day later the clock shows the same hour: the gap is not booked and the hour continues.
  const auto nextDay = [](const std::string& time) { return Sample("2024-05-07T" + time); };
  EXPECT_EQ(HoursOf({At("10:00:00"), At("10:00:00"), At("10:05:00"), nextDay("10:06:00"),
                     nextDay("10:11:00")}),
            (Hours{{10, kWhOf600Seconds}}));
  // One second before the full hour the hour has not ended; at the next sample it has.
  EXPECT_EQ(
      HoursOf({At("10:50:00"), At("10:54:59"), At("10:59:59"), At("11:04:59"), At("11:09:59")}),
      (Hours{{10, kWhOf600Seconds}, {11, kWhOf300Seconds}}));
}

TEST(HourlyEnergy, CountsBothTypesOfSamples) {
  EXPECT_EQ(HoursOf({At("10:00:00"), At("10:05:00", "36", "PCM_CHARGER"), At("10:10:00")}),
            (Hours{{10, kWhOf300Seconds}}));
}

TEST(HourlyEnergy, BooksAnIntervalAcrossTheHourInTheHourItStarts) {
  EXPECT_EQ(HoursOf({At("10:00:00"), At("10:56:00"), At("11:01:00"), At("11:06:00")}),
            (Hours{{10, kWhOf300Seconds}, {11, kWhOf300Seconds}}));
}

TEST(HourlyEnergy, BooksGapsUpTo600Seconds) {
  EXPECT_EQ(HoursOf({At("09:00:00"), At("10:00:00"), At("10:10:01"), At("10:20:01")}),
            (Hours{{10, kWhOf600Seconds}}));
}

TEST(HourlyEnergy, BooksNothingForAStepBackInTime) {
  EXPECT_EQ(HoursOf({At("09:00:00"), At("10:10:00"), At("10:05:00")}), (Hours{{10, 0.0F}}));
}

TEST(HourlyEnergy, IncludesAnHourThatBookedNothingWithZero) {
  EXPECT_EQ(HoursOf({At("09:00:00"), At("10:00:00"), At("12:00:00"), At("12:05:00")}),
            (Hours{{10, 0.0F}, {12, kWhOf300Seconds}}));
}

TEST(HourlyEnergy, CarriesAnHourThatEndsOnAnotherTypeIntoTheNext) {
  // The sum of 10:50 to 10:55 is not closed at 10:55, a sample of another type, but at 11:05.
  EXPECT_EQ(HoursOf({At("10:45:00"), At("10:50:00"), At("10:55:00", "999", "PCM_SCREEN"),
                     At("11:00:00"), At("11:05:00")}),
            (Hours{{11, kWhOf600Seconds}}));
}

TEST(HourlyEnergy, LosesTheSumBeforeALastInnerElementOfAnotherType) {
  EXPECT_EQ(HoursOf({At("10:45:00"), At("10:50:00"), At("10:55:00", "36", "X"), At("10:59:00")}),
            Hours());
}

TEST(HourlyEnergy, DropsTheSecondSumOfAnHour) {
  EXPECT_EQ(HoursOf({At("10:00:00"), At("10:05:00"), At("10:10:00"), At("11:00:00", "72"),
                     At("10:20:00", "999"), At("10:25:00", "999"), At("10:30:00")}),
            (Hours{{10, kWhOf300Seconds}, {11, 0.0F}}));
}

TEST(HourlyEnergy, BooksNoIntervalForAnElementWithoutAStringTime) {
  const std::string timeless = R"({"TelemetryType":"PCM_SENSOR","Power":999})";
  // The hour continues after the element and is closed by the last inner element.
  EXPECT_EQ(HoursOf({At("10:00:00"), At("10:05:00"), At("10:10:00"), timeless, At("10:20:00"),
                     At("10:25:00"), At("10:30:00")}),
            (Hours{{10, 9.0F / 0.88F}}));
  EXPECT_EQ(HoursOf({At("10:00:00"), At("10:05:00"), At("10:10:00"), timeless}),
            (Hours{{10, kWhOf300Seconds}}));
}

TEST(HourlyEnergy, CountsNumbersBeyond32BitFloatAsZero) {
  EXPECT_EQ(HoursOf({At("10:00:00"), At("10:05:00", "1e300"), At("10:10:00", "3e38"),
                     At("10:15:00"), At("10:20:00")}),
            (Hours{{10, kWhOf300Seconds}}));
}

TEST(HourlyEnergy, SkipsElementsThatAreNotObjects) {
  EXPECT_EQ(HoursOf({"null", "1", "[]", At("10:05:00"), At("10:10:00")}),
            (Hours{{10, kWhOf300Seconds}}));
}
