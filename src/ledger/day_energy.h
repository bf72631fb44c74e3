#pragma once

#include <functional>
#include <map>
#include <memory>

#include "base/calendar.h"
#include "base/json_rows.h"
#include "ledger/day_summary.h"

// Energy of a day and of an hour, from lists of samples (docs/formats/sample-files.md). A list is
// in the order of time; it is not sorted here. It is read once, element by element, and no element
// is kept. Energy is watt-hours.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// Reads one day's samples. Null for a day without a list that parses: it counts as a day without
/// samples.
using DaySummaryReader = std::function<std::shared_ptr<const DaySummary>(const DateTime& day)>;

/// Passes one day's samples to `sink`, each with the members kSampleMembers
/// (ledger/sample_energy.h). False for a day without a list that parses, even if the sink received
/// some.
using DayReader = std::function<bool(const DateTime& day, JsonRowSink& sink)>;

/// Energy of one day, from its samples and the nearest sample of each neighbouring day; 0.0 for a
/// day without samples. Reads `day` first. Reads the day before only if the first sample is a
/// counted one, and then the day after only if the last of several is. Exceptions of `read`
/// propagate.
[[nodiscard]] float DayEnergyWh(const DateTime& day, const DaySummaryReader& read);

/// Energy by local hour (0 to 23) of one day's samples, without its neighbours. The first and the
/// last element are not counted themselves. An hour has an entry, perhaps 0.0, if a counted sample
/// of it is followed by an element of another hour or is the last but one. Empty for a day without
/// samples and for fewer than three elements. Exceptions of `read` propagate.
[[nodiscard]] std::map<int, float> HourlyEnergyWh(const DateTime& day, const DayReader& read);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
