#pragma once

#include <cstdio>
#include <string>

#include "base/calendar.h"

namespace TestSupport {

/// "2025-03-29 00:00:00 dst 0": all fields but the day of the week and of the year.
[[nodiscard]] inline std::string Text(
    const Zq::Gantry::Server::Services::Wattleaf::DateTime& time) {
  char buffer[96];
  std::snprintf(buffer, sizeof(buffer), "%04d-%02d-%02d %02d:%02d:%02d dst %d", time.tm_year + 1900,
                time.tm_mon + 1, time.tm_mday, time.tm_hour, time.tm_min, time.tm_sec,
                time.tm_isdst);
  return buffer;
}

/// A local time: `month` from 1, `year` in full, the days of the week and of the year 0.
[[nodiscard]] inline Zq::Gantry::Server::Services::Wattleaf::DateTime LocalTime(
    int year, int month, int day, int hour = 0, int minute = 0, int second = 0, int dst = 0) {
  return {second, minute, hour, day, month - 1, year - 1900, 0, 0, dst};
}

}  // namespace TestSupport
