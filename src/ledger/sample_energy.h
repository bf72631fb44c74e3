#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>

#include "base/json_rows.h"
#include "base/time_reader.h"

// One sample of the collector, and the energy between two. Energy is watt-hours in 32-bit float.
// The order of the arithmetic is part of the contract: another order gives other last digits.
// Others can write the data folder, so that any member may have any type.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// Samples further apart than this are a gap, whose time is not booked.
inline constexpr std::int32_t kLargestIntervalSeconds = 600;
inline constexpr float kSecondsPerHour = 3600.0F;
/// Every sum of samples is divided by this once, at its end.
inline constexpr float kEnergyDivisor = 0.88F;

static_assert(std::numeric_limits<float>::is_iec559);
static_assert(std::bit_cast<std::uint32_t>(kEnergyDivisor) == 0x3F6147AE);

/// The members of a sample that are read. The rows below have them in this order.
inline constexpr std::array<std::string_view, 3> kSampleMembers{"TelemetryType", "SampleTime",
                                                                "Power"};

/// When a sample was taken.
struct SampleTime {
  std::int64_t instant = -1;  ///< as in LocalTime
  std::int32_t hour = 0;      ///< of the local time, 0 to 23
};

/// `value`, or 0.0 for an infinity or NaN. Either would stay in a sum for ever, and makes the JSON
/// writer stop in the middle of its text.
[[nodiscard]] float FiniteOrZero(float value);

/// A number of a document as a float; 0.0 if it is too large for one.
[[nodiscard]] float NarrowToFloat(double value);

/// The energy of `seconds` at `watts`; 0.0 unless the low 32 bits of `seconds` are 1 to 600.
[[nodiscard]] float IntervalEnergyWh(std::int64_t seconds, float watts);

/// The energy of the interval between two times at `watts`; 0.0 if either is missing.
[[nodiscard]] float EnergyBetweenWh(const std::optional<SampleTime>& start,
                                    const std::optional<SampleTime>& end, float watts);

/// Whether the sample counts: its "TelemetryType" is exactly "PCM_CHARGER" or "PCM_SENSOR".
[[nodiscard]] bool IsCountedSample(JsonRow sample);

/// "Power" in watts; 0.0 if it is missing, not a number, or too large for a float.
[[nodiscard]] float SamplePowerWatts(JsonRow sample);

/// The text of "SampleTime"; null if it is missing or not a string. Valid as long as the row.
[[nodiscard]] const char* SampleTimeText(JsonRow sample);

/// The time that a text of "SampleTime" stands for; a text that is not a time gives what
/// TimeReader reads from it. Empty for null.
[[nodiscard]] std::optional<SampleTime> TryReadTime(TimeReader& times, const char* text);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
