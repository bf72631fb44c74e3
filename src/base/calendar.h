#pragma once

#include <cstdint>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Broken-down local calendar time: the nine fields of the C library's `tm`, with its meanings
/// (months from 0, years from 1900). All zero unless filled.
struct DateTime {
  std::int32_t tm_sec = 0;
  std::int32_t tm_min = 0;
  std::int32_t tm_hour = 0;
  std::int32_t tm_mday = 0;
  std::int32_t tm_mon = 0;
  std::int32_t tm_year = 0;
  std::int32_t tm_wday = 0;
  std::int32_t tm_yday = 0;
  std::int32_t tm_isdst = 0;
};
static_assert(sizeof(DateTime) == 36);

/// Orders by the instant that local `mktime` gives for copies of both: a key is never changed.
bool operator<(const DateTime& left, const DateTime& right);

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
