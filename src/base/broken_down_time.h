#pragma once

#include <ctime>

#include "base/date_time.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

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
