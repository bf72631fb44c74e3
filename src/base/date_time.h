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

}  // namespace Zq::Gantry::Server::Services::Wattleaf
