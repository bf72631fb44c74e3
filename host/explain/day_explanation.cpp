#include "explain/day_explanation.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/date_text.h"
#include "base/json_rows.h"
#include "base/time_reader.h"

namespace WattleafHost {

namespace {

using namespace Zq::Gantry::Server::Services::Wattleaf;
using Kind = ExplainedInterval::Kind;

std::string TypeOf(JsonRow row) {
  const rapidjson::Value& type = row[0];
  return type.IsString() ? std::string(type.GetString(), type.GetStringLength()) : std::string();
}

class SampleCollector final : public JsonRowSink {
 public:
  void Take(JsonRow row) override {
    const char* text = SampleTimeText(row);
    samples_.push_back({IsCountedSample(row), TypeOf(row), text == nullptr ? "" : text,
                        TryReadTime(times_, text), SamplePowerWatts(row)});
  }

  [[nodiscard]] std::vector<ExplainedSample> Finish() { return std::move(samples_); }

 private:
  TimeReader times_{kSampleTimeFormat};
  std::vector<ExplainedSample> samples_;
};

/// Nothing for a day without a list that parses.
std::optional<std::vector<ExplainedSample>> TryCollect(const DateTime& day, const DayReader& read) {
  SampleCollector collector;
  if (!read(day, collector)) return std::nullopt;
  return collector.Finish();
}

/// Why an interval between two times is booked or not.
Booking JudgeLength(const std::optional<SampleTime>& start, const std::optional<SampleTime>& end,
                    std::int32_t seconds, float watts) {
  if (!start || !end) return Booking::kNoTime;
  if (seconds > kLargestIntervalSeconds) return Booking::kGap;
  if (seconds < 1) return Booking::kNotForward;
  const bool isFinite = std::isfinite(static_cast<float>(seconds) * watts / kSecondsPerHour);
  return isFinite ? Booking::kBooked : Booking::kTooLarge;
}

/// The interval at `watts`, whose energy is the library's.
ExplainedInterval Between(Kind kind, const ExplainedSample& start, const ExplainedSample& end,
                          float watts) {
  ExplainedInterval interval;
  interval.kind = kind;
  interval.from = start.timeText;
  interval.to = end.timeText;
  interval.watts = watts;
  if (start.time && end.time) {
    interval.seconds = static_cast<std::int32_t>(end.time->instant - start.time->instant);
  }
  interval.booking = JudgeLength(start.time, end.time, interval.seconds, watts);
  interval.energyWh = EnergyBetweenWh(start.time, end.time, watts);
  return interval;
}

/// The same, for an interval that counts at no length.
ExplainedInterval Skipped(ExplainedInterval interval, Booking reason) {
  interval.booking = reason;
  interval.energyWh = 0.0F;
  return interval;
}

const ExplainedSample kNoSample;

ExplainedInterval LinkToDayBefore(const DateTime& day, const ExplainedSample& first,
                                  const DayReader& read) {
  const auto link = [&first](const ExplainedSample& before) {
    return Between(Kind::kLinkToDayBefore, before, first, before.watts);
  };
  if (!first.isCounted) return Skipped(link(kNoSample), Booking::kOtherType);
  const auto before = TryCollect(ShiftKeepingHour(day, -kSecondsPerDay), read);
  if (!before || before->empty()) return Skipped(link(kNoSample), Booking::kNoNeighbour);
  return link(before->back());
}

// With the power of the later sample, as the library does.
ExplainedInterval LinkToDayAfter(const DateTime& day, const std::vector<ExplainedSample>& samples,
                                 const DayReader& read) {
  const ExplainedSample& last = samples.back();
  const auto link = [&last](const ExplainedSample& after) {
    return Between(Kind::kLinkToDayAfter, last, after, after.watts);
  };
  if (samples.size() == 1) return Skipped(link(kNoSample), Booking::kSingleSample);
  if (!last.isCounted) return Skipped(link(kNoSample), Booking::kOtherType);
  const auto after = TryCollect(ShiftKeepingHour(day, kSecondsPerDay), read);
  if (!after || after->empty()) return Skipped(link(kNoSample), Booking::kNoNeighbour);
  return link(after->front());
}

/// The interval that begins at one sample of a list and is not the last.
ExplainedInterval Inner(const std::vector<ExplainedSample>& samples, std::size_t index) {
  const ExplainedSample& start = samples[index];
  const ExplainedInterval interval = Between(Kind::kInner, start, samples[index + 1], start.watts);
  if (index == 0) return Skipped(interval, Booking::kFirstInterval);
  return start.isCounted ? interval : Skipped(interval, Booking::kOtherType);
}

class HourWalk {
 public:
  explicit HourWalk(HourExplanation& hours) : hours_(hours) {}

  void Run() {
    const std::vector<ExplainedSample>& samples = hours_.samples;
    for (std::size_t i = 0; i + 1 < samples.size(); ++i) {
      hours_.intervals.push_back(Inner(samples, i));
      if (i > 0 && samples[i].isCounted && samples[i].time) TakeInterval(i);
      hours_.intervals.back().sumWh = sumWh_;
      if (endsHour_) Restart();
    }
    if (!samples.empty()) {
      const ExplainedSample& last = samples.back();
      hours_.intervals.push_back(
          Skipped(Between(Kind::kInner, last, kNoSample, last.watts), Booking::kEndOfList));
    }
    if (sumWh_ != 0.0F) hours_.unendedFrom = firstInterval_;
  }

 private:
  void TakeInterval(std::size_t i) {
    const ExplainedSample& start = hours_.samples[i];
    const ExplainedSample& end = hours_.samples[i + 1];
    sumWh_ += hours_.intervals[i].energyWh;
    const bool isNextHour = end.time && end.time->hour != start.time->hour;
    const bool isLastInner = i + 2 == hours_.samples.size();
    if (!isNextHour && !isLastInner) return;
    const bool isDropped = std::ranges::any_of(
        hours_.sums, [&](const HourSum& sum) { return sum.hour == start.time->hour; });
    hours_.sums.push_back({start.time->hour, firstInterval_, i + 1, sumWh_,
                           FiniteOrZero(sumWh_ / kEnergyDivisor), isDropped});
    endsHour_ = true;
  }

  void Restart() {
    endsHour_ = false;
    sumWh_ = 0.0F;
    firstInterval_ = hours_.intervals.size();
  }

  HourExplanation& hours_;
  float sumWh_ = 0.0F;
  bool endsHour_ = false;
  std::size_t firstInterval_ = 0;
};

}  // namespace

const char* BookingText(Booking booking) {
  switch (booking) {
    case Booking::kBooked:
      return "";
    case Booking::kFirstInterval:
      return "the first interval of a day is never booked";
    case Booking::kOtherType:
      return "the sample is of another type than PCM_CHARGER and PCM_SENSOR";
    case Booking::kGap:
      return "a gap of more than 600 seconds";
    case Booking::kNotForward:
      return "the time does not move forward";
    case Booking::kNoTime:
      return "a sample has no time";
    case Booking::kTooLarge:
      return "the energy is too large for a 32-bit float";
    case Booking::kNoNeighbour:
      return "the neighbouring day has no readable sample";
    case Booking::kSingleSample:
      return "a day with one sample has no link to the day after";
    case Booking::kEndOfList:
      return "the last sample of a day begins no interval of an hour";
  }
  return "";
}

DayExplanation ExplainDay(const DateTime& day, const DayReader& read) {
  DayExplanation result;
  auto samples = TryCollect(day, read);
  result.hasList = samples.has_value();
  if (!samples || samples->empty()) return result;
  result.samples = std::move(*samples);

  const auto add = [&result](ExplainedInterval interval) {
    result.sumWh += interval.energyWh;
    interval.sumWh = result.sumWh;
    result.intervals.push_back(std::move(interval));
  };
  add(LinkToDayBefore(day, result.samples.front(), read));
  for (std::size_t i = 0; i + 1 < result.samples.size(); ++i) add(Inner(result.samples, i));
  add(LinkToDayAfter(day, result.samples, read));
  result.energyWh = FiniteOrZero(result.sumWh / kEnergyDivisor);
  return result;
}

HourExplanation ExplainHours(const DateTime& day, const DayReader& read) {
  HourExplanation result;
  auto samples = TryCollect(day, read);
  result.hasList = samples.has_value();
  if (samples) result.samples = std::move(*samples);
  HourWalk(result).Run();
  return result;
}

std::map<int, float> HoursOf(const HourExplanation& explanation) {
  std::map<int, float> hours;
  for (const HourSum& sum : explanation.sums) {
    if (!sum.isDropped) hours[sum.hour] = sum.energyWh;
  }
  return hours;
}

std::int64_t LargestGapSeconds(const std::vector<ExplainedSample>& samples) {
  std::int64_t largest = 0;
  for (std::size_t i = 0; i + 1 < samples.size(); ++i) {
    if (!samples[i].time || !samples[i + 1].time) continue;
    largest = std::max(largest, samples[i + 1].time->instant - samples[i].time->instant);
  }
  return largest;
}

}  // namespace WattleafHost
