#pragma once

#include <map>

#include "base/json_document.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Watt-hours by local hour (0 to 23) of one day's samples, without links to other days. Holds only
/// hours that came to an end in the list, some of them with 0.0. Empty for a null document.
std::map<int, float> HourlyEnergyWh(const GenericDocument* samples);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
