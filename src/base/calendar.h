#pragma once

#include <cstdint>

// What a day is, for the whole library: local time, steps of 86400 seconds, and the hour restored
// after each step. Two values are the same day only if they have the same time of day.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// Broken-down local calendar time: the nine fields of the C library's `tm`, with its meanings
/// (months from 0, years from 1900). All zero by default.
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

/// Orders by the instant that local `mktime` returns for copies of both, so that a map's key is
/// never changed. All times outside the calendar (1970 to 3000) are equal and precede the others.
[[nodiscard]] bool operator<(const DateTime& left, const DateTime& right);

/// The step between days everywhere in this library, also on days of 23 or 25 hours.
inline constexpr std::int64_t kSecondsPerDay = 86400;

/// The local time now. Returns one static per thread, which the next call on that thread
/// overwrites: copy it at once. Never null.
[[nodiscard]] DateTime* GetCurrentDateTime();

/// Today at 00:00:00, with the `tm_isdst` of the current time. Returns another static per thread.
[[nodiscard]] DateTime* GetCurrentDate();

/// Sets `result` to `from` plus `days` steps of 86400 seconds, then restores the hour of `from`.
/// Normalises `from` as `mktime` does. If the result is outside the calendar, all fields but the
/// hour are -1. Returns `result`.
DateTime& AddDays(DateTime& from, DateTime& result, int days);

/// The local time `seconds` after `from`, with the hour of `from` restored. If the result is
/// outside the calendar, all fields but the hour are -1.
[[nodiscard]] DateTime ShiftKeepingHour(DateTime from, std::int64_t seconds);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
