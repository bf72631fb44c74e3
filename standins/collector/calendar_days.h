#pragma once

// Stand-in: local calendar days for the collector, from the C library, so that they follow the zone
// that a test has set.

#include <cstdint>
#include <string>

namespace Standin {

/// A local calendar day: its date, and the instants of its begin and end.
struct CalendarDay {
  std::int64_t number = 0;  // days from 1970-01-01
  std::int64_t begin = 0;   // seconds since 1970 of 00:00:00
  std::int64_t end = 0;     // of the next day's 00:00:00
  std::string date;         // "%Y-%m-%d"
};

/// The day of an instant in seconds since 1970.
[[nodiscard]] CalendarDay DayOf(std::int64_t instant);

/// The day that is `days` calendar days after `day`.
[[nodiscard]] CalendarDay DayAfter(const CalendarDay& day, int days);

/// "%Y-%m-%dT%H:%M:%S" in local time: where the clocks change, an hour is missing or comes twice.
[[nodiscard]] std::string LocalTimeText(std::int64_t instant);

}  // namespace Standin
