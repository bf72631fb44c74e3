#include <gtest/gtest.h>

#include <map>
#include <string>

#include "ledger/day_energy.h"
#include "ledger/fake_days.h"
#include "ledger/sample_energy.h"

// Sample documents that the collector would not write: every program of the user can write to the
// data folder.

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace TestSupport;

namespace {

constexpr char kToday[] = "2024-05-06";

std::string At(const std::string& time, const std::string& power = "36") {
  return Sample(std::string(kToday) + "T" + time, power);
}

/// Keeps what is asked of one sample.
struct OneSample final : JsonRowSink {
  void Take(JsonRow sample) override {
    isCounted = IsCountedSample(sample);
    watts = SamplePowerWatts(sample);
  }
  bool isCounted = true;
  float watts = -1.0F;
};

OneSample Only(const std::string& element) {
  OneSample sample;
  EXPECT_TRUE(PassSamples(List({element}), sample)) << element;
  return sample;
}

bool IsCounted(const std::string& element) { return Only(element).isCounted; }
float WattsOf(const std::string& element) { return Only(element).watts; }

float EnergyOf(const std::string& json) {
  return DayEnergyWh(Day(kToday), FakeDays{{kToday, json}}.Summaries());
}

}  // namespace

TEST(DayEnergy, IsZeroWithoutAnArrayOfSamples) {
  for (const char* json : {"[]", "{}", "null", "42", "\"[]\"", "not json"}) {
    EXPECT_EQ(EnergyOf(json), 0.0F) << json;
  }
}

TEST(DayEnergy, IsZeroForAListThatEndsInTheMiddle) {
  const std::string list = List({At("10:00:00"), At("10:05:00"), At("10:10:00")});
  EXPECT_EQ(EnergyOf(list), kWhOf300Seconds);
  EXPECT_EQ(EnergyOf(list.substr(0, list.size() - 1)), 0.0F);
}

TEST(DayEnergy, HasNoLinkToANeighbourWhoseListEndsInTheMiddle) {
  const std::string before = List({Sample("2024-05-05T23:55:00")});
  const std::string today = List({At("00:00:00"), At("23:55:00")});
  const std::string after = List({Sample("2024-05-07T00:00:00")});
  const auto energyOf = [&](std::size_t cutBefore, std::size_t cutAfter) {
    FakeDays days{{"2024-05-05", before.substr(0, before.size() - cutBefore)},
                  {kToday, today},
                  {"2024-05-07", after.substr(0, after.size() - cutAfter)}};
    return DayEnergyWh(Day(kToday), days.Summaries());
  };
  EXPECT_EQ(energyOf(0, 0), kWhOf600Seconds);
  EXPECT_EQ(energyOf(1, 0), kWhOf300Seconds);
  EXPECT_EQ(energyOf(0, 1), kWhOf300Seconds);
}

TEST(DayEnergy, SkipsElementsWithoutAStringType) {
  for (const char* element :
       {"null", "7", "\"PCM_SENSOR\"", "[]", "{}", R"({"SampleTime":"2024-05-06T10:05:00"})",
        R"({"TelemetryType":1,"SampleTime":"2024-05-06T10:05:00","Power":36})",
        R"({"TelemetryType":["PCM_SENSOR"],"SampleTime":"2024-05-06T10:05:00","Power":36})"}) {
    SCOPED_TRACE(element);
    EXPECT_FALSE(IsCounted(element));
    // The intervals on both sides of the element are lost, later ones are booked.
    EXPECT_EQ(EnergyOf(List({At("09:00:00"), element, At("10:10:00"), At("10:15:00")})),
              kWhOf300Seconds);
  }
}

TEST(DayEnergy, BooksNoIntervalForElementsWithoutAStringTime) {
  for (const char* element : {R"({"TelemetryType":"PCM_SENSOR","Power":36})",
                              R"({"TelemetryType":"PCM_SENSOR","SampleTime":5,"Power":36})",
                              R"({"TelemetryType":"PCM_SENSOR","SampleTime":null,"Power":36})"}) {
    SCOPED_TRACE(element);
    EXPECT_EQ(EnergyOf(List({element})), 0.0F);
    EXPECT_EQ(EnergyOf(List({element, element})), 0.0F);
    EXPECT_EQ(
        EnergyOf(List({element, At("10:00:00"), element, At("10:10:00"), At("10:15:00"), element})),
        kWhOf300Seconds);
  }
}

TEST(DayEnergy, HasNoLinkToANeighbourWithoutAStringTime) {
  FakeDays days{{"2024-05-05", R"([{"Power":36}])"},
                {kToday, List({At("00:00:00"), At("23:59:59")})},
                {"2024-05-07", "[null]"}};
  EXPECT_EQ(DayEnergyWh(Day(kToday), days.Summaries()), 0.0F);
}

TEST(DayEnergy, BooksNothingForUnreadableTimes) {
  EXPECT_EQ(EnergyOf(List({Sample(""), Sample("yesterday"), Sample("99"), At("00:00:00")})), 0.0F);
}

TEST(SamplePowerWatts, IsZeroForAPowerThatIsNotANumber) {
  for (const char* power : {"\"36\"", "null", "true", "[36]", "{}"}) {
    SCOPED_TRACE(power);
    EXPECT_EQ(WattsOf(At("10:00:00", power)), 0.0F);
    EXPECT_EQ(
        EnergyOf(List({At("09:00:00"), At("10:00:00", power), At("10:05:00"), At("10:10:00")})),
        kWhOf300Seconds);
  }
}

TEST(SamplePowerWatts, IsZeroForAMissingPower) {
  EXPECT_EQ(WattsOf(R"({"TelemetryType":"PCM_SENSOR"})"), 0.0F);
}

TEST(SamplePowerWatts, ReadsIntegersAndReals) {
  EXPECT_EQ(WattsOf(R"({"Power":36})"), 36.0F);
  EXPECT_EQ(WattsOf(R"({"Power":-2})"), -2.0F);
  EXPECT_EQ(WattsOf(R"({"Power":36.25})"), 36.25F);
  EXPECT_EQ(WattsOf(R"({"Power":18446744073709551615})"), 18446744073709551616.0F);
}

TEST(DayEnergy, CountsAPowerBeyond32BitFloatAsZero) {
  for (const char* power : {"1e39", "-1e300", "1.7e308"}) {
    SCOPED_TRACE(power);
    EXPECT_EQ(
        EnergyOf(List({At("09:00:00"), At("10:00:00", power), At("10:05:00"), At("10:10:00")})),
        kWhOf300Seconds);
  }
}

TEST(DayEnergy, CountsAnIntervalBeyond32BitFloatAsZero) {
  // The power is finite, 300 times the power is not.
  EXPECT_EQ(
      EnergyOf(List({At("09:00:00"), At("10:00:00", "3e38"), At("10:05:00"), At("10:10:00")})),
      kWhOf300Seconds);
}

TEST(DayEnergy, IsZeroForASumBeyond32BitFloat) {
  // One second at 3.4e38 W is 9.4e34 Wh; 3,650 of them are more than a float holds.
  std::vector<std::string> elements;
  for (int second = 0; second < 3660; ++second) {
    char time[16];
    std::snprintf(time, sizeof(time), "%02d:%02d:%02d", second / 3600, second / 60 % 60,
                  second % 60);
    elements.push_back(At(time, "3.4e38"));
  }
  EXPECT_EQ(EnergyOf(List(elements)), 0.0F);
}

TEST(DayEnergy, UsesTheLow32BitsOfTheSecondsBetweenSamples) {
  // The two samples are 4294967296 + 100 seconds apart. The low 32 bits are 100: 100 s at 36 W are
  // 1 Wh.
  EXPECT_EQ(EnergyOf(List(
                {At("09:00:00"), Sample("1970-01-02T00:00:00"), Sample("2106-02-08T06:29:56")})),
            1.0F / 0.88F);
}
