#pragma once

#include <optional>

#include "base/calendar.h"
#include "base/json_document.h"

// One element of a day's list of samples, read with care: the data folder is written by others.
namespace Zq::Gantry::Server::Services::Wattleaf {

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
