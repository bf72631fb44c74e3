#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/calendar.h"
#include "ledger/day_energy.h"
#include "ledger/sample_energy.h"

// Why a day or an hour has the energy that it has: the walk of ledger/day_energy.h, with a note of
// each interval. The energy of each interval comes from the library; the test
// DayExplanation.HasTheBitsOfTheLibrary compares sums and results with the library's.
namespace WattleafHost {

using Zq::Gantry::Server::Services::Wattleaf::DateTime;
using Zq::Gantry::Server::Services::Wattleaf::DayReader;

/// One element of a day's list.
struct ExplainedSample {
  bool isCounted = false;
  std::string type;      ///< empty if it is missing or not a string
  std::string timeText;  ///< of "SampleTime"; empty if it is missing or not a string
  std::optional<Zq::Gantry::Server::Services::Wattleaf::SampleTime> time;
  float watts = 0.0F;
};

/// Why the time of an interval is booked or not.
enum class Booking {
  kBooked,
  kFirstInterval,  ///< from the first sample to the second: never booked
  kOtherType,      ///< the sample that decides about it is not a counted one
  kGap,            ///< longer than 600 seconds
  kNotForward,     ///< of 0 seconds, or back in time
  kNoTime,         ///< one of its samples has no time
  kTooLarge,       ///< its energy is beyond a 32-bit float
  kNoNeighbour,    ///< the link to a day without a readable sample
  kSingleSample,   ///< the link to the day after, of a day with one sample
  kEndOfList,      ///< an hour counts no interval from the last sample
};

/// The reason in words; empty for kBooked.
[[nodiscard]] const char* BookingText(Booking booking);

/// From one sample to the next.
struct ExplainedInterval {
  enum class Kind { kInner, kLinkToDayBefore, kLinkToDayAfter };
  Kind kind = Kind::kInner;
  Booking booking = Booking::kBooked;
  std::string from;          ///< the time as written; empty if there is no sample or no time
  std::string to;            ///< the same
  std::int32_t seconds = 0;  ///< 0 if one of the times is missing
  float watts = 0.0F;        ///< the power that is used; 0.0 if there is no sample
  float energyWh = 0.0F;     ///< 0.0 unless it is booked
  float sumWh = 0.0F;        ///< after this interval
};

/// The energy of one day.
struct DayExplanation {
  bool hasList = false;  ///< false for a day without a list that parses
  std::vector<ExplainedSample> samples;
  std::vector<ExplainedInterval> intervals;  ///< in the order of the arithmetic
  float sumWh = 0.0F;
  float energyWh = 0.0F;  ///< the sum divided by kEnergyDivisor
};

/// One sum of intervals that ended with an hour.
struct HourSum {
  int hour = 0;
  std::size_t firstInterval = 0;  ///< of HourExplanation::intervals
  std::size_t endInterval = 0;    ///< the one after the last
  float sumWh = 0.0F;
  float energyWh = 0.0F;
  /// Another sum of the same hour came first, and this one is dropped.
  bool isDropped = false;
};

/// The energy of the hours of one day, as command 4 has it.
struct HourExplanation {
  bool hasList = false;
  std::vector<ExplainedSample> samples;
  std::vector<ExplainedInterval> intervals;  ///< one for each sample, which begins it
  std::vector<HourSum> sums;
  /// The first interval of a sum that no hour ended: its energy is in no hour.
  std::optional<std::size_t> unendedFrom;
};

/// Reads what DayEnergyWh reads, in the same order. Exceptions of `read` propagate.
[[nodiscard]] DayExplanation ExplainDay(const DateTime& day, const DayReader& read);

/// Reads what HourlyEnergyWh reads. Exceptions of `read` propagate.
[[nodiscard]] HourExplanation ExplainHours(const DateTime& day, const DayReader& read);

/// The hours with the energy of each, as HourlyEnergyWh returns them.
[[nodiscard]] std::map<int, float> HoursOf(const HourExplanation& explanation);

/// The longest time between two neighbouring samples of a list that have times, in seconds; 0 for
/// fewer than two.
[[nodiscard]] std::int64_t LargestGapSeconds(const std::vector<ExplainedSample>& samples);

}  // namespace WattleafHost
