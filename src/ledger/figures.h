#pragma once

#include "base/calendar.h"
#include "ledger/power_ledger.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Watt-hours per day over `today` and the six days before it. Days that the ledger lacks count as
/// 0.0: the divisor is always seven.
float AverageDayEnergyWh(const DateTime& today, const PowerLedger& ledger);

/// The trees that stand for an average of so many watt-hours a day.
float TreesSaved(float averageWh);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
