#pragma once

#include <cstdint>
#include <ctime>

#include "base/calendar.h"

// The seam to the C library's clock and local calendar: one Windows body, one native twin.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// Seconds since 1970 in UTC, now (`_time64`).
std::int64_t CurrentInstant();

/// The instant of a local time, which is normalised in place as `mktime` does; -1, and `local`
/// untouched, for times before 1970 or after the year 3000.
std::int64_t MakeInstant(DateTime& local);

/// The instant of a copy.
std::int64_t InstantOf(DateTime local);

/// The local time of an instant (`_localtime64_s`); all fields -1 where it has none.
DateTime LocalTimeOf(std::int64_t instant);

// The C library's `tm` has further fields on some systems, so it is never the same type as
// DateTime.

inline std::tm ToTm(const DateTime& time) {
  std::tm result{};
  result.tm_sec = time.tm_sec;
  result.tm_min = time.tm_min;
  result.tm_hour = time.tm_hour;
  result.tm_mday = time.tm_mday;
  result.tm_mon = time.tm_mon;
  result.tm_year = time.tm_year;
  result.tm_wday = time.tm_wday;
  result.tm_yday = time.tm_yday;
  result.tm_isdst = time.tm_isdst;
  return result;
}

inline DateTime FromTm(const std::tm& time) {
  return {time.tm_sec,  time.tm_min,  time.tm_hour, time.tm_mday, time.tm_mon,
          time.tm_year, time.tm_wday, time.tm_yday, time.tm_isdst};
}

/// What a time without calendar fields looks like, as `_localtime64_s` leaves it.
inline constexpr DateTime kNoTime{-1, -1, -1, -1, -1, -1, -1, -1, -1};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
