#pragma once

#include <bit>
#include <cstdint>
#include <limits>
#include <optional>

#include "base/calendar.h"
#include "base/json_document.h"

// One sample of the collector, and the energy between two. Energy is watt-hours in 32-bit float.
// The order of the arithmetic is part of the contract: another order gives other last digits.
// Others can write the data folder, so that any element may have any type.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// Samples further apart than this are a gap, whose time is not booked.
inline constexpr std::int32_t kLargestIntervalSeconds = 600;
inline constexpr float kSecondsPerHour = 3600.0F;
/// Every sum of samples is divided by this once, at its end.
inline constexpr float kEnergyDivisor = 0.88F;

static_assert(std::numeric_limits<float>::is_iec559);
static_assert(std::bit_cast<std::uint32_t>(kEnergyDivisor) == 0x3F6147AE);

/// `value`, or 0.0 for an infinity or NaN. Either would stay in a sum for ever, and makes the JSON
/// writer stop in the middle of its text.
[[nodiscard]] float FiniteOrZero(float value);

/// A number of a document as a float; 0.0 if it is too large for one.
[[nodiscard]] float NarrowToFloat(double value);

/// The energy of `seconds` at `watts`; 0.0 unless the low 32 bits of `seconds` are 1 to 600.
[[nodiscard]] float IntervalEnergyWh(std::int64_t seconds, float watts);

/// False for a missing document, a root that is not an array, and an empty array.
[[nodiscard]] bool HasSamples(const GenericDocument* samples);

/// Whether this element counts: its "TelemetryType" is exactly "PCM_CHARGER" or "PCM_SENSOR".
[[nodiscard]] bool IsCountedSample(const rapidjson::Value& element);

/// "Power" in watts; 0.0 if it is missing, not a number, or too large for a float.
[[nodiscard]] float SamplePowerWatts(const rapidjson::Value& element);

/// "SampleTime" as local time; empty if it is missing or not a string. A string that is not a time
/// gives what ParseDateTime reads from it.
[[nodiscard]] std::optional<DateTime> TrySampleTime(const rapidjson::Value& element);

/// The energy of the interval between two elements at `watts`; 0.0 if either has no time.
[[nodiscard]] float EnergyBetweenWh(const rapidjson::Value& from, const rapidjson::Value& to,
                                    float watts);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
