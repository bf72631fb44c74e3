#pragma once

#include <cstdint>
#include <ctime>

#include "base/calendar.h"

// The seam to the C library's clock and local calendar, with one body for Windows and one for other
// systems. An instant is a count of seconds since 1970 in UTC; the calendar reaches from there to
// the end of the year 3000 on both.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// The instant now (`_time64`).
[[nodiscard]] std::int64_t CurrentInstant();

/// The instant of a local time (`_mktime64`), which is normalised in place. Returns -1 for a time
/// outside the calendar and leaves it unchanged.
std::int64_t MakeInstant(DateTime& local);

/// The instant of a local time, which is not changed; -1 for a time outside the calendar.
[[nodiscard]] std::int64_t InstantOf(DateTime local);

/// The local time of an instant (`_localtime64_s`); kNoTime outside the calendar.
[[nodiscard]] DateTime LocalTimeOf(std::int64_t instant);

/// All fields -1, as `_localtime64_s` leaves them when it fails.
inline constexpr DateTime kNoTime{-1, -1, -1, -1, -1, -1, -1, -1, -1};

/// `time` in the C library's type. Fields that only some systems have stay zero.
[[nodiscard]] inline std::tm ToTm(const DateTime& time) {
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

/// The nine fields of `time` that every C library has.
[[nodiscard]] inline DateTime FromTm(const std::tm& time) {
  return {time.tm_sec,  time.tm_min,  time.tm_hour, time.tm_mday, time.tm_mon,
          time.tm_year, time.tm_wday, time.tm_yday, time.tm_isdst};
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
