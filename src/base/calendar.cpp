#include "base/calendar.h"

#include <chrono>

#include "base/local_calendar.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

// Times written so many days apart are so ordered in any zone. The largest step of a zone's clocks,
// over the date line, is a day.
constexpr std::chrono::days kFarApart{4};

bool IsBetween(std::int32_t value, std::int32_t least, std::int32_t most) {
  return value >= least && value <= most;
}

/// Whether no field leads to another day, apart from a day of the month that it may lack, and the
/// year is inside the calendar in any zone.
bool HasPlainFields(const DateTime& time) {
  return IsBetween(time.tm_year, 1971 - 1900, 2999 - 1900) && IsBetween(time.tm_mon, 0, 11) &&
         IsBetween(time.tm_mday, 1, 31) && IsBetween(time.tm_hour, 0, 23) &&
         IsBetween(time.tm_min, 0, 59) && IsBetween(time.tm_sec, 0, 60);
}

std::chrono::sys_days DayOf(const DateTime& time) {
  using namespace std::chrono;
  return sys_days(year(time.tm_year + 1900) / month(static_cast<unsigned>(time.tm_mon + 1)) / 1) +
         days(time.tm_mday - 1);
}

}  // namespace

bool operator<(const DateTime& left, const DateTime& right) {
  // The C library needs up to some microseconds for each instant, and maps compare often.
  if (HasPlainFields(left) && HasPlainFields(right)) {
    const std::chrono::days distance = DayOf(right) - DayOf(left);
    if (distance >= kFarApart) return true;
    if (distance <= -kFarApart) return false;
  }
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
