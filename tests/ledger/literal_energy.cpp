#include "ledger/literal_energy.h"

#include <optional>
#include <string_view>

#include "base/date_text.h"
#include "base/local_calendar.h"
#include "ledger/sample_energy.h"

namespace TestSupport {

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

bool HasSamples(const GenericDocument* samples) {
  return samples != nullptr && samples->IsArray() && !samples->Empty();
}

bool IsCountedSample(const rapidjson::Value& element) {
  const rapidjson::Value* member = TryStringMember(element, "TelemetryType");
  if (member == nullptr) return false;
  const std::string_view type(member->GetString(), member->GetStringLength());
  return type == "PCM_CHARGER" || type == "PCM_SENSOR";
}

float SamplePowerWatts(const rapidjson::Value& element) {
  const rapidjson::Value* member = TryNumberMember(element, "Power");
  return member != nullptr ? NarrowToFloat(member->GetDouble()) : 0.0F;
}

std::optional<DateTime> TrySampleTime(const rapidjson::Value& element) {
  const rapidjson::Value* member = TryStringMember(element, "SampleTime");
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

float LinkToDayBeforeWh(const DateTime& day, const rapidjson::Value& first,
                        const DocumentReader& read) {
  const auto previous = read(ShiftKeepingHour(day, -kSecondsPerDay));
  if (!HasSamples(previous.get())) return 0.0F;
  const rapidjson::Value& before = (*previous)[previous->Size() - 1];
  return EnergyBetweenWh(before, first, SamplePowerWatts(before));
}

float LinkToDayAfterWh(const DateTime& day, const rapidjson::Value& last,
                       const DocumentReader& read) {
  const auto next = read(ShiftKeepingHour(day, kSecondsPerDay));
  if (!HasSamples(next.get())) return 0.0F;
  const rapidjson::Value& after = *next->Begin();
  return EnergyBetweenWh(last, after, SamplePowerWatts(after));
}

float HourIntervalWh(const DateTime& start, const std::optional<DateTime>& end, float watts) {
  if (!end) return 0.0F;
  return IntervalEnergyWh(InstantOf(*end) - InstantOf(start), watts);
}

bool IsSameHour(const DateTime& start, const std::optional<DateTime>& end) {
  return !end || end->tm_hour == start.tm_hour;
}

}  // namespace

float LiteralDayEnergyWh(const DateTime& day, const DocumentReader& read) {
  const auto samples = read(day);
  if (!HasSamples(samples.get())) return 0.0F;

  const rapidjson::SizeType count = samples->Size();
  float sumWh = 0.0F;
  for (rapidjson::SizeType i = 0; i < count; ++i) {
    const rapidjson::Value& sample = (*samples)[i];
    if (!IsCountedSample(sample)) continue;
    if (i == 0) {
      sumWh += LinkToDayBeforeWh(day, sample, read);
    } else if (i + 1 < count) {
      sumWh += EnergyBetweenWh(sample, (*samples)[i + 1], SamplePowerWatts(sample));
    } else {
      sumWh += LinkToDayAfterWh(day, sample, read);
    }
  }
  return FiniteOrZero(sumWh / kEnergyDivisor);
}

std::map<int, float> LiteralHourlyEnergyWh(const GenericDocument* samples) {
  std::map<int, float> hours;
  if (!HasSamples(samples)) return hours;

  const rapidjson::SizeType count = samples->Size();
  float sumWh = 0.0F;
  for (rapidjson::SizeType i = 1; i + 1 < count; ++i) {
    const rapidjson::Value& sample = (*samples)[i];
    if (!IsCountedSample(sample)) continue;
    const auto start = TrySampleTime(sample);
    if (!start) continue;
    const auto end = TrySampleTime((*samples)[i + 1]);
    sumWh += HourIntervalWh(*start, end, SamplePowerWatts(sample));

    const bool isLastInner = i + 2 == count;
    if (IsSameHour(*start, end) && !isLastInner) continue;
    hours.emplace(start->tm_hour, FiniteOrZero(sumWh / kEnergyDivisor));
    sumWh = 0.0F;
  }
  return hours;
}

}  // namespace TestSupport
