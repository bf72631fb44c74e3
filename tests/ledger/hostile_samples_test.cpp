#include <gtest/gtest.h>

#include "ledger/day_energy.h"
#include "ledger/fake_days.h"
#include "ledger/sample_element.h"

// What others may have left in the data folder in the place of samples.

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace TestSupport;

namespace {

constexpr char kToday[] = "2024-05-06";
constexpr float kThree = 3.0F / 0.88F;

std::string At(const std::string& time, const std::string& power = "36") {
  return Sample(std::string(kToday) + "T" + time, power);
}

float EnergyOf(const std::string& json) {
  return DayEnergyWh(Day(kToday), FakeDays{{kToday, json}}.Reader());
}

}  // namespace

TEST(HostileSamples, DayThatIsNoArrayOfSamplesIsEmpty) {
  for (const char* json : {"[]", "{}", "null", "42", "\"[]\"", "not json"}) {
    EXPECT_EQ(EnergyOf(json), 0.0F) << json;
  }
}

TEST(HostileSamples, MissingDocumentIsEmpty) {
  EXPECT_EQ(DayEnergyWh(Day(kToday), [](const DateTime&) { return nullptr; }), 0.0F);
}

TEST(HostileSamples, ElementWithoutStringTypeIsSteppedOver) {
  for (const char* element :
       {"null", "7", "\"PCM_SENSOR\"", "[]", "{}", R"({"SampleTime":"2024-05-06T10:05:00"})",
        R"({"TelemetryType":1,"SampleTime":"2024-05-06T10:05:00","Power":36})",
        R"({"TelemetryType":["PCM_SENSOR"],"SampleTime":"2024-05-06T10:05:00","Power":36})"}) {
    SCOPED_TRACE(element);
    EXPECT_FALSE(IsCountedSample(*Document(element)));
    // The intervals that touch the element are gone, the ones after it stay.
    EXPECT_EQ(EnergyOf(List({At("09:00:00"), element, At("10:10:00"), At("10:15:00")})), kThree);
  }
}

TEST(HostileSamples, ElementWithoutStringTimeHasNoInterval) {
  for (const char* element : {R"({"TelemetryType":"PCM_SENSOR","Power":36})",
                              R"({"TelemetryType":"PCM_SENSOR","SampleTime":5,"Power":36})",
                              R"({"TelemetryType":"PCM_SENSOR","SampleTime":null,"Power":36})"}) {
    SCOPED_TRACE(element);
    EXPECT_EQ(EnergyOf(List({element})), 0.0F);
    EXPECT_EQ(EnergyOf(List({element, element})), 0.0F);
    EXPECT_EQ(
        EnergyOf(List({element, At("10:00:00"), element, At("10:10:00"), At("10:15:00"), element})),
        kThree);
  }
}

TEST(HostileSamples, NeighbourWithoutStringTimeHasNoLink) {
  FakeDays days{{"2024-05-05", R"([{"Power":36}])"},
                {kToday, List({At("00:00:00"), At("23:59:59")})},
                {"2024-05-07", "[null]"}};
  EXPECT_EQ(DayEnergyWh(Day(kToday), days.Reader()), 0.0F);
}

TEST(HostileSamples, TimesThatAreNoTimesContributeNothing) {
  EXPECT_EQ(EnergyOf(List({Sample(""), Sample("yesterday"), Sample("99"), At("00:00:00")})), 0.0F);
}

TEST(HostileSamples, PowerOfAnotherTypeIsZero) {
  for (const char* power : {"\"36\"", "null", "true", "[36]", "{}"}) {
    SCOPED_TRACE(power);
    EXPECT_EQ(SamplePowerWatts(*Document(At("10:00:00", power))), 0.0F);
    EXPECT_EQ(
        EnergyOf(List({At("09:00:00"), At("10:00:00", power), At("10:05:00"), At("10:10:00")})),
        kThree);
  }
}

TEST(HostileSamples, MissingPowerIsZero) {
  EXPECT_EQ(SamplePowerWatts(*Document(R"({"TelemetryType":"PCM_SENSOR"})")), 0.0F);
}

TEST(HostileSamples, PowerMayBeIntegerOrReal) {
  EXPECT_EQ(SamplePowerWatts(*Document(R"({"Power":36})")), 36.0F);
  EXPECT_EQ(SamplePowerWatts(*Document(R"({"Power":-2})")), -2.0F);
  EXPECT_EQ(SamplePowerWatts(*Document(R"({"Power":36.25})")), 36.25F);
  EXPECT_EQ(SamplePowerWatts(*Document(R"({"Power":18446744073709551615})")),
            18446744073709551616.0F);
}

TEST(HostileSamples, PowerBeyond32BitFloatCountsAsZero) {
  for (const char* power : {"1e39", "-1e300", "1.7e308"}) {
    SCOPED_TRACE(power);
    EXPECT_EQ(
        EnergyOf(List({At("09:00:00"), At("10:00:00", power), At("10:05:00"), At("10:10:00")})),
        kThree);
  }
}

TEST(HostileSamples, IntervalBeyond32BitFloatCountsAsZero) {
  // The power is finite, but not 300 times the power.
  EXPECT_EQ(
      EnergyOf(List({At("09:00:00"), At("10:00:00", "3e38"), At("10:05:00"), At("10:10:00")})),
      kThree);
}

TEST(HostileSamples, SumBeyond32BitFloatBooksNothing) {
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

TEST(HostileSamples, SamplesTwoToThe32SecondsAndAHundredApartCountAsAHundred) {
  // 4294967296 seconds and 100 more, of which the low 32 bits count: 100 s at 36 W are 1 Wh.
  EXPECT_EQ(EnergyOf(List(
                {At("09:00:00"), Sample("1970-01-02T00:00:00"), Sample("2106-02-08T06:29:56")})),
            1.0F / 0.88F);
}
