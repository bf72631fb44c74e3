#include "ledger/sample_energy.h"

#include <array>
#include <cmath>
#include <string_view>

#include "base/date_text.h"
#include "base/json_document.h"
#include "base/local_calendar.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

constexpr char kTypeKey[] = "TelemetryType";
constexpr char kTimeKey[] = "SampleTime";
constexpr char kPowerKey[] = "Power";
constexpr std::array<std::string_view, 2> kCountedTypes{"PCM_CHARGER", "PCM_SENSOR"};

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

bool HasSamples(const GenericDocument* samples) {
  return samples != nullptr && samples->IsArray() && !samples->Empty();
}

bool IsCountedSample(const rapidjson::Value& element) {
  const rapidjson::Value* member = TryStringMember(element, kTypeKey);
  if (member == nullptr) return false;
  const std::string_view type(member->GetString(), member->GetStringLength());
  return type == kCountedTypes[0] || type == kCountedTypes[1];
}

float SamplePowerWatts(const rapidjson::Value& element) {
  const rapidjson::Value* member = TryNumberMember(element, kPowerKey);
  return member != nullptr ? NarrowToFloat(member->GetDouble()) : 0.0F;
}

std::optional<DateTime> TrySampleTime(const rapidjson::Value& element) {
  const rapidjson::Value* member = TryStringMember(element, kTimeKey);
  if (member == nullptr) return std::nullopt;
  DateTime time;
  return ParseDateTime(time, member->GetString(), kSampleTimeFormat);
}

float EnergyBetweenWh(const rapidjson::Value& from, const rapidjson::Value& to, float watts) {
  const auto start = TrySampleTime(from);
  const auto end = TrySampleTime(to);
  if (!start || !end) return 0.0F;
  return IntervalEnergyWh(InstantOf(*end) - InstantOf(*start), watts);
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
