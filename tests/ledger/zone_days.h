#pragma once

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <stdexcept>
#include <string>

#include "base/calendar.h"
#include "base/local_calendar.h"

// The days of 2025 on which the clocks of the tests' two zones change. Both are Sundays, and in
// both zones clocks change in the small hours, so noon is always after the change.
namespace TestSupport {

struct ChangeDays {
  const char* zone;
  int springMonth, springDay;
  int autumnMonth, autumnDay;
  /// The hour that autumn repeats.
  int repeatedHour;
};

inline const ChangeDays& ChangesOfThisZone() {
  static constexpr ChangeDays kZones[] = {
      {"Europe/Berlin", 3, 30, 10, 26, 2},
      {"America/New_York", 3, 9, 11, 2, 1},
  };
  const char* name = std::getenv("WATTLEAF_TEST_ZONE");
  for (const ChangeDays& zone : kZones) {
    if (name != nullptr && std::string(name) == zone.zone) return zone;
  }
  throw std::runtime_error("WATTLEAF_TEST_ZONE names no zone of this test");
}

/// The local time of a day of 2025, its month and day taken as they come; the C library says
/// whether it is summer time.
inline Zq::Gantry::Server::Services::Wattleaf::DateTime LocalIn2025(int month, int day, int hour,
                                                                    int minute = 0) {
  using namespace Zq::Gantry::Server::Services::Wattleaf;
  DateTime time{0, minute, hour, day, month - 1, 125, 0, 0, -1};
  MakeInstant(time);
  return time;
}

inline Zq::Gantry::Server::Services::Wattleaf::DateTime Spring(int plusDays, int hour = 12,
                                                               int minute = 0) {
  return LocalIn2025(ChangesOfThisZone().springMonth, ChangesOfThisZone().springDay + plusDays,
                     hour, minute);
}

inline Zq::Gantry::Server::Services::Wattleaf::DateTime Autumn(int plusDays, int hour = 12,
                                                               int minute = 0) {
  return LocalIn2025(ChangesOfThisZone().autumnMonth, ChangesOfThisZone().autumnDay + plusDays,
                     hour, minute);
}

/// What the clock says is today at that time: midnight, with the summer time of the moment.
inline Zq::Gantry::Server::Services::Wattleaf::DateTime TodayAt(
    Zq::Gantry::Server::Services::Wattleaf::DateTime now) {
  now.tm_hour = 0;
  now.tm_min = 0;
  now.tm_sec = 0;
  return now;
}

}  // namespace TestSupport
