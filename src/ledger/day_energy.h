#pragma once

#include <functional>
#include <map>
#include <memory>

#include "base/calendar.h"
#include "base/json_document.h"

// Energy of a day and of an hour, from lists of samples (docs/formats/sample-files.md). A list is
// in the order of time; it is not sorted here. Energy is watt-hours.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// Reads one day's samples. Null for a day whose text does not parse, which counts as a day without
/// samples.
using DayReader = std::function<std::unique_ptr<GenericDocument>(const DateTime& day)>;

/// Energy of one day, from its samples and the nearest sample of each neighbouring day; 0.0 for a
/// day without samples. Reads `day` first. Reads the day before only if the first sample is a
/// counted one, and the day after only if the last of several is. Exceptions of `read` propagate.
[[nodiscard]] float DayEnergyWh(const DateTime& day, const DayReader& read);

/// Energy by local hour (0 to 23) of one day's samples, without its neighbours. The first and the
/// last element are not counted themselves. An hour has an entry, perhaps 0.0, if a counted sample
/// of it is followed by an element of another hour or is the last but one. Empty for a null
/// document and for fewer than three elements.
[[nodiscard]] std::map<int, float> HourlyEnergyWh(const GenericDocument* samples);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
