#pragma once

#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include "base/calendar.h"
#include "base/local_calendar.h"

// The clock changes of 2025 in the two zones in which the zone tests run. Both days are Sundays,
// and the clocks change before 03:00, so noon is always after the change.
namespace TestSupport {

/// Days are those of the local calendar, instants those of the change itself.
struct ClockChanges {
  const char* zone;
  int utcOffsetHours;  // in winter
  int springMonth, springDay;
  std::int64_t springInstant;
  int autumnMonth, autumnDay;
  std::int64_t autumnInstant;
  int repeatedHour;  // on the autumn day
};

/// The clock changes of the zone that WATTLEAF_TEST_ZONE names.
[[nodiscard]] inline const ClockChanges& ChangesOfThisZone() {
  static constexpr ClockChanges kZones[] = {
      // 2025-03-30 01:00 and 2025-10-26 01:00, in UTC.
      {"Europe/Berlin", 1, 3, 30, 1743296400, 10, 26, 1761440400, 2},
      // 2025-03-09 07:00 and 2025-11-02 06:00, in UTC.
      {"America/New_York", -5, 3, 9, 1741503600, 11, 2, 1762063200, 1},
  };
  const char* name = std::getenv("WATTLEAF_TEST_ZONE");
  for (const ClockChanges& zone : kZones) {
    if (name != nullptr && std::string(name) == zone.zone) return zone;
  }
  throw std::runtime_error("WATTLEAF_TEST_ZONE must name one of the zones of these tests");
}

/// A local time of 2025. `month` and `day` may run over; the C library sets the summer time flag.
[[nodiscard]] inline Zq::Gantry::Server::Services::Wattleaf::DateTime LocalIn2025(int month,
                                                                                  int day, int hour,
                                                                                  int minute = 0) {
  using namespace Zq::Gantry::Server::Services::Wattleaf;
  DateTime time{0, minute, hour, day, month - 1, 125, 0, 0, -1};
  MakeInstant(time);
  return time;
}

/// A local time `plusDays` days after the day on which clocks go forward.
[[nodiscard]] inline Zq::Gantry::Server::Services::Wattleaf::DateTime Spring(int plusDays,
                                                                             int hour = 12,
                                                                             int minute = 0) {
  return LocalIn2025(ChangesOfThisZone().springMonth, ChangesOfThisZone().springDay + plusDays,
                     hour, minute);
}

/// A local time `plusDays` days after the day on which clocks go back.
[[nodiscard]] inline Zq::Gantry::Server::Services::Wattleaf::DateTime Autumn(int plusDays,
                                                                             int hour = 12,
                                                                             int minute = 0) {
  return LocalIn2025(ChangesOfThisZone().autumnMonth, ChangesOfThisZone().autumnDay + plusDays,
                     hour, minute);
}

/// Today as the product computes it from the clock: midnight with the summer time flag of `now`.
[[nodiscard]] inline Zq::Gantry::Server::Services::Wattleaf::DateTime TodayAt(
    Zq::Gantry::Server::Services::Wattleaf::DateTime now) {
  now.tm_hour = 0;
  now.tm_min = 0;
  now.tm_sec = 0;
  return now;
}

}  // namespace TestSupport
