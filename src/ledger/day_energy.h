#pragma once

#include <functional>
#include <map>
#include <memory>

#include "base/calendar.h"
#include "base/json_document.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Reads one day's samples; null for a day whose text does not parse, which counts as empty.
using DayReader = std::function<std::unique_ptr<GenericDocument>(const DateTime& day)>;

/// Watt-hours of one day, from its samples and the nearest samples of its two neighbours. Reads
/// `day`, then the day before and the day after where the first and the last sample count. 0.0 for
/// a day without samples. What `read` throws passes through.
float DayEnergyWh(const DateTime& day, const DayReader& read);

/// Watt-hours by local hour (0 to 23) of one day's samples, without links to other days. Holds only
/// hours that came to an end in the list, some of them with 0.0. Empty for a null document.
std::map<int, float> HourlyEnergyWh(const GenericDocument* samples);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
