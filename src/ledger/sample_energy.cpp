#include "ledger/sample_energy.h"

#include <cmath>

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

constexpr std::array<std::string_view, 2> kCountedTypes{"PCM_CHARGER", "PCM_SENSOR"};

// Places in kSampleMembers.
constexpr std::size_t kType = 0;
constexpr std::size_t kTime = 1;
constexpr std::size_t kPower = 2;

}  // namespace

float FiniteOrZero(float value) { return std::isfinite(value) ? value : 0.0F; }

float NarrowToFloat(double value) { return FiniteOrZero(static_cast<float>(value)); }

float IntervalEnergyWh(std::int64_t seconds, float watts) {
  // Kept on purpose: a difference counts by its low 32 bits (test
  // IntervalEnergyWh.UsesTheLow32BitsOfTheDifference).
  const auto length = static_cast<std::int32_t>(seconds);
  if (length < 1 || length > kLargestIntervalSeconds) return 0.0F;
  return FiniteOrZero(static_cast<float>(length) * watts / kSecondsPerHour);
}

float EnergyBetweenWh(const std::optional<SampleTime>& start, const std::optional<SampleTime>& end,
                      float watts) {
  if (!start || !end) return 0.0F;
  return IntervalEnergyWh(end->instant - start->instant, watts);
}

bool IsCountedSample(JsonRow sample) {
  const rapidjson::Value& member = sample[kType];
  if (!member.IsString()) return false;
  const std::string_view type(member.GetString(), member.GetStringLength());
  return type == kCountedTypes[0] || type == kCountedTypes[1];
}

float SamplePowerWatts(JsonRow sample) {
  const rapidjson::Value& member = sample[kPower];
  return member.IsNumber() ? NarrowToFloat(member.GetDouble()) : 0.0F;
}

const char* SampleTimeText(JsonRow sample) {
  const rapidjson::Value& member = sample[kTime];
  return member.IsString() ? member.GetString() : nullptr;
}

std::optional<SampleTime> TryReadTime(TimeReader& times, const char* text) {
  if (text == nullptr) return std::nullopt;
  const LocalTime time = times.Read(text);
  return SampleTime{time.instant, time.fields.tm_hour};
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
