#pragma once

// Stand-in: the collector's view of the local calendar, through the C library's clock, so that it
// follows the zone that a test has pinned.

#include <cstdint>
#include <string>

namespace Standin {

/// A local calendar day: real instants, and the date.
struct CalendarDay {
  std::int64_t number = 0;  // days from 1970-01-01
  std::int64_t begin = 0;   // seconds since 1970 of 00:00:00
  std::int64_t end = 0;     // of the next day's 00:00:00
  std::string date;         // "%Y-%m-%d"
};

/// The day of an instant in seconds since 1970.
CalendarDay DayOf(std::int64_t instant);

/// The day that is `days` calendar days after `day`.
CalendarDay DayAfter(const CalendarDay& day, int days);

/// "%Y-%m-%dT%H:%M:%S" in local time, as the clock on the wall shows it: the skipped hour is left
/// out and the repeated one comes twice.
std::string LocalTimeText(std::int64_t instant);

}  // namespace Standin
