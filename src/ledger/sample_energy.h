#pragma once

#include <bit>
#include <cstdint>
#include <limits>
#include <optional>

#include "base/calendar.h"
#include "base/json_document.h"

// All energy is watt-hours in 32-bit float, in the order of steps that the figures have always been
// made in: another order gives other last digits.

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Samples further apart than this are a gap, whose time is not booked.
inline constexpr std::int32_t kLargestIntervalSeconds = 600;
inline constexpr float kSecondsPerHour = 3600.0F;
/// Every sum of samples is divided by this once, at its end.
inline constexpr float kEnergyDivisor = 0.88F;

static_assert(std::numeric_limits<float>::is_iec559);
static_assert(std::bit_cast<std::uint32_t>(kEnergyDivisor) == 0x3F6147AE);

/// `value`, or 0.0 for an infinity or no number: one of those in a sum would never leave it, and
/// the JSON writer stops in the middle of its text at one.
float FiniteOrZero(float value);

/// Narrows a number of a document; 0.0 for one that no 32-bit float can hold.
float NarrowToFloat(double value);

/// What `seconds` at `watts` add to a sum; 0.0 unless their low 32 bits are 1 to 600 seconds.
float IntervalEnergyWh(std::int64_t seconds, float watts);

// One element of a day's list of samples, read with care: the data folder is written by others.

/// False for a missing document, a root that is no array, and an empty array.
bool HasSamples(const GenericDocument* samples);

/// Whether the readers count this element: its "TelemetryType" is exactly "PCM_CHARGER" or
/// "PCM_SENSOR". Anything else, a non-object included, is stepped over.
bool IsCountedSample(const rapidjson::Value& element);

/// "Power" in watts; 0.0 where it is missing, no number, or too large for a 32-bit float.
float SamplePowerWatts(const rapidjson::Value& element);

/// "SampleTime" as local time; none where it is no string. Text that is no time gives what
/// ParseDateTime makes of it.
std::optional<DateTime> TrySampleTime(const rapidjson::Value& element);

/// What the interval from one element to another adds at `watts`; 0.0 where one of them has no
/// time.
float EnergyBetweenWh(const rapidjson::Value& from, const rapidjson::Value& to, float watts);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
