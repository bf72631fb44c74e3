#include "ledger/day_energy.h"

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/date_text.h"
#include "base/time_reader.h"
#include "ledger/sample_energy.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

struct Sample {
  bool isCounted = false;
  float watts = 0.0F;
  std::optional<SampleTime> time;  ///< only of a counted sample and of the one after it
};

/// Receives the samples of a day, and passes on each interval that begins at a counted sample other
/// than the first one.
class DaySamples : public JsonRowSink {
 public:
  void Take(JsonRow row) final {
    const bool endsInterval = count_ > 1 && last_.isCounted;
    Sample sample{IsCountedSample(row), SamplePowerWatts(row), std::nullopt};
    if (sample.isCounted || endsInterval) sample.time = TryReadTime(times_, SampleTimeText(row));
    if (endsInterval) TakeInterval(last_, sample);
    if (count_ == 0) first_ = sample;
    last_ = sample;
    ++count_;
  }

  /// Of the samples that were received, also within TakeInterval.
  [[nodiscard]] std::size_t Count() const { return count_; }
  [[nodiscard]] const Sample& First() const { return first_; }
  [[nodiscard]] const Sample& Last() const { return last_; }

 private:
  virtual void TakeInterval(const Sample& start, const Sample& end) = 0;

  TimeReader times_{kSampleTimeFormat};
  std::size_t count_ = 0;
  Sample first_;
  Sample last_;
};

/// Keeps the energy of each interval: it is added up only after the link to the day before.
class DayIntervals final : public DaySamples {
 public:
  [[nodiscard]] const std::vector<float>& EnergiesWh() const { return energiesWh_; }

 private:
  void TakeInterval(const Sample& start, const Sample& end) override {
    energiesWh_.push_back(EnergyBetweenWh(start.time, end.time, start.watts));
  }

  std::vector<float> energiesWh_;
};

/// Adds the intervals up by the hour.
class HourSums final : public DaySamples {
 public:
  /// The hours of a list that has ended.
  [[nodiscard]] std::map<int, float> Finish() {
    // The last sample but one ends its hour, unless it is not a counted one.
    if (openHour_ && samplesAtOpenHour_ + 1 == Count()) EndHour(*openHour_);
    return std::move(hours_);
  }

 private:
  void TakeInterval(const Sample& start, const Sample& end) override {
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

/// Keeps the first or the last sample of a neighbouring day, whose type does not matter.
class NearestSample final : public JsonRowSink {
 public:
  enum class End { kFirst, kLast };

  explicit NearestSample(End end) : end_(end) {}

  void Take(JsonRow row) override {
    if (isKnown_ && end_ == End::kFirst) return;
    isKnown_ = true;
    watts_ = SamplePowerWatts(row);
    const char* text = SampleTimeText(row);
    hasTime_ = text != nullptr;
    if (hasTime_) time_ = text;
  }

  [[nodiscard]] float Watts() const { return watts_; }
  /// Empty also for a day without samples.
  [[nodiscard]] std::optional<SampleTime> Time() const {
    if (!isKnown_ || !hasTime_) return std::nullopt;
    TimeReader times(kSampleTimeFormat);
    return TryReadTime(times, time_.c_str());
  }

 private:
  End end_;
  bool isKnown_ = false;
  bool hasTime_ = false;
  float watts_ = 0.0F;
  std::string time_;
};

float LinkToDayBeforeWh(const DateTime& day, const Sample& first, const DayReader& read) {
  NearestSample before(NearestSample::End::kLast);
  if (!read(ShiftKeepingHour(day, -kSecondsPerDay), before)) return 0.0F;
  return EnergyBetweenWh(before.Time(), first.time, before.Watts());
}

// Kept on purpose: the power is that of the later sample, while every other interval uses that of
// the earlier one (test DayEnergy.LinkToTheDayAfterUsesThePowerOfTheLaterSample).
float LinkToDayAfterWh(const DateTime& day, const Sample& last, const DayReader& read) {
  NearestSample after(NearestSample::End::kFirst);
  if (!read(ShiftKeepingHour(day, kSecondsPerDay), after)) return 0.0F;
  return EnergyBetweenWh(last.time, after.Time(), after.Watts());
}

}  // namespace

// Kept on purpose: each sample takes one branch, so that the interval from the first sample to the
// second is not booked, and a single sample gets only its link to the day before (tests
// DayEnergy.SkipsTheFirstInterval and DayEnergy.SingleSampleHasOnlyItsLinkToTheDayBefore).
float DayEnergyWh(const DateTime& day, const DayReader& read) {
  DayIntervals samples;
  if (!read(day, samples) || samples.Count() == 0) return 0.0F;

  float sumWh = 0.0F;
  if (samples.First().isCounted) sumWh += LinkToDayBeforeWh(day, samples.First(), read);
  for (const float energyWh : samples.EnergiesWh()) sumWh += energyWh;
  const bool hasLinkAfter = samples.Count() > 1 && samples.Last().isCounted;
  if (hasLinkAfter) sumWh += LinkToDayAfterWh(day, samples.Last(), read);
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
