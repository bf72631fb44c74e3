#include "ledger/hourly_energy.h"

#include <optional>

#include "base/local_calendar.h"
#include "ledger/energy_arithmetic.h"
#include "ledger/sample_element.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

float HourIntervalWh(const DateTime& start, const std::optional<DateTime>& end, float watts) {
  if (!end) return 0.0F;
  return IntervalEnergyWh(InstantOf(*end) - InstantOf(start), watts);
}

bool IsSameHour(const DateTime& start, const std::optional<DateTime>& end) {
  return !end || end->tm_hour == start.tm_hour;
}

}  // namespace

// Kept on purpose: only the inner elements count; an hour that ends on an element of another type
// spills into the next; and the first sum of an hour stays, a later one is dropped (tests
// HourlyEnergy.IsEmptyForTwoElements, .HourEndingOnAnotherTypeSpillsIntoTheNext and
// .SecondSumOfAnHourIsDropped).
std::map<int, float> HourlyEnergyWh(const GenericDocument* samples) {
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

}  // namespace Zq::Gantry::Server::Services::Wattleaf
