#pragma once

#include <cstddef>

#include "reports/power_log_record.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// The bytes of a row in the store's file, the comma or bracket after it included. The energy
/// counts with its longest text, since it changes while rows of one identity are added up.
std::size_t StoredRowBytes(const PowerLogRecord& row);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
