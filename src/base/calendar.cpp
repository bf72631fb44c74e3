#include "base/calendar.h"

#include "base/local_calendar.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

bool operator<(const DateTime& left, const DateTime& right) {
  return InstantOf(left) < InstantOf(right);
}

// One static per thread, since the daily pass and the host's threads call at the same time.
DateTime* GetCurrentDateTime() {
  static thread_local DateTime now;
  now = LocalTimeOf(CurrentInstant());
  return &now;
}

DateTime* GetCurrentDate() {
  static thread_local DateTime today;
  today = LocalTimeOf(CurrentInstant());
  today.tm_hour = 0;
  today.tm_min = 0;
  today.tm_sec = 0;
  return &today;
}

// Kept on purpose: the step is 86400 seconds and only the hour is restored, so a walk backwards
// skips the day on which clocks go forward (test AddDays.SkipsTheSpringChangeDayBackward).
DateTime& AddDays(DateTime& from, DateTime& result, int days) {
  const std::int32_t hour = from.tm_hour;
  const std::int64_t instant = MakeInstant(from) + days * kSecondsPerDay;
  result = LocalTimeOf(instant);
  result.tm_hour = hour;
  return result;
}

DateTime ShiftKeepingHour(DateTime from, std::int64_t seconds) {
  const std::int32_t hour = from.tm_hour;
  DateTime result = LocalTimeOf(MakeInstant(from) + seconds);
  result.tm_hour = hour;
  return result;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
