#include "ledger/day_energy.h"

#include <cstddef>
#include <optional>
#include <utility>

#include "ledger/sample_energy.h"
#include "ledger/sample_intervals.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

/// Adds the intervals up by the hour.
class HourSums final : public SampleIntervals {
 public:
  /// The hours of a list that has ended.
  [[nodiscard]] std::map<int, float> Finish() {
    // The last sample but one ends its hour, unless it is not a counted one.
    if (openHour_ && samplesAtOpenHour_ + 1 == Count()) EndHour(*openHour_);
    return std::move(hours_);
  }

 private:
  void TakeInterval(const DaySample& start, const DaySample& end) override {
    if (!start.time) return;
    sumWh_ += EnergyBetweenWh(start.time, end.time, start.watts);
    if (end.time && end.time->hour != start.time->hour) {
      EndHour(start.time->hour);
    } else {
      openHour_ = start.time->hour;
      samplesAtOpenHour_ = Count();
    }
  }

  void EndHour(int hour) {
    hours_.emplace(hour, FiniteOrZero(sumWh_ / kEnergyDivisor));
    sumWh_ = 0.0F;
  }

  std::map<int, float> hours_;
  float sumWh_ = 0.0F;
  std::optional<int> openHour_;        ///< of the last interval that did not end its hour
  std::size_t samplesAtOpenHour_ = 0;  ///< how many came before the end of that interval
};

float LinkToDayBeforeWh(const DateTime& day, const DaySample& first, const DaySummaryReader& read) {
  const auto before = read(ShiftKeepingHour(day, -kSecondsPerDay));
  if (!before) return 0.0F;
  return EnergyBetweenWh(before->last.time, first.time, before->last.watts);
}

// Kept on purpose: the power is that of the later sample, while every other interval uses that of
// the earlier one (test DayEnergy.LinkToTheDayAfterUsesThePowerOfTheLaterSample).
float LinkToDayAfterWh(const DateTime& day, const DaySample& last, const DaySummaryReader& read) {
  const auto after = read(ShiftKeepingHour(day, kSecondsPerDay));
  if (!after) return 0.0F;
  return EnergyBetweenWh(last.time, after->first.time, after->first.watts);
}

}  // namespace

// Kept on purpose: each sample takes one branch, so that the interval from the first sample to the
// second is not booked, and a single sample gets only its link to the day before (tests
// DayEnergy.SkipsTheFirstInterval and DayEnergy.SingleSampleHasOnlyItsLinkToTheDayBefore).
float DayEnergyWh(const DateTime& day, const DaySummaryReader& read) {
  const auto samples = read(day);
  if (!samples || samples->count == 0) return 0.0F;

  float sumWh = 0.0F;
  if (samples->first.isCounted) sumWh += LinkToDayBeforeWh(day, samples->first, read);
  for (const float energyWh : samples->intervalsWh) sumWh += energyWh;
  const bool hasLinkAfter = samples->count > 1 && samples->last.isCounted;
  if (hasLinkAfter) sumWh += LinkToDayAfterWh(day, samples->last, read);
  return FiniteOrZero(sumWh / kEnergyDivisor);
}

// Kept on purpose: only the inner elements count; the energy of an hour that ends on an element of
// another type goes to the next hour; and of two sums for one hour the first is kept (tests
// HourlyEnergy.IsEmptyForTwoElements, HourlyEnergy.CarriesAnHourThatEndsOnAnotherTypeIntoTheNext
// and HourlyEnergy.DropsTheSecondSumOfAnHour).
std::map<int, float> HourlyEnergyWh(const DateTime& day, const DayReader& read) {
  HourSums samples;
  if (!read(day, samples)) return {};
  return samples.Finish();
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
