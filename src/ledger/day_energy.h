#pragma once

#include "base/calendar.h"
#include "ledger/sample_files.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Watt-hours of one day, from its samples and the nearest samples of its two neighbours. Reads
/// `day`, then the day before and the day after where the first and the last sample count. 0.0 for
/// a day without samples. What `read` throws passes through.
float DayEnergyWh(const DateTime& day, const DayReader& read);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
