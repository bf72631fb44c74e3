#pragma once

#include <cstdint>

#include "base/date_time.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// The step between days everywhere in this system, also on days of 23 or 25 hours.
inline constexpr std::int64_t kSecondsPerDay = 86400;

/// The local time now. One static for each thread, overwritten at each call: copy it at once.
DateTime* GetCurrentDateTime();

/// Today at 00:00:00, `tm_isdst` as the clock gave it. A static of its own, for each thread.
DateTime* GetCurrentDate();

/// `from` plus `days` steps of 86400 seconds, with the hour of `from` put back by hand. Normalises
/// `from` as `mktime` does. Returns `result`.
DateTime& AddDays(DateTime& from, DateTime& result, int days);

/// The local time `seconds` after `from`, with the hour of `from` put back by hand.
DateTime ShiftKeepingHour(DateTime from, std::int64_t seconds);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
