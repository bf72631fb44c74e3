#pragma once

#include <cstdint>

#include "base/time_reader.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// The time of a row in a third of the space of a LocalTime, because a store has many rows: what is
/// written of it, and its instant. The fields are those of DateTime, in their ranges.
struct RowTime {
  RowTime() = default;
  explicit RowTime(const LocalTime& time)
      : instant(time.instant),
        year(static_cast<std::int16_t>(time.fields.tm_year)),
        month(static_cast<std::int8_t>(time.fields.tm_mon)),
        day(static_cast<std::int8_t>(time.fields.tm_mday)),
        hour(static_cast<std::int8_t>(time.fields.tm_hour)),
        minute(static_cast<std::int8_t>(time.fields.tm_min)),
        second(static_cast<std::int8_t>(time.fields.tm_sec)) {}

  /// Without the day of the week, that of the year, and summer time.
  [[nodiscard]] DateTime Fields() const {
    return {.tm_sec = second,
            .tm_min = minute,
            .tm_hour = hour,
            .tm_mday = day,
            .tm_mon = month,
            .tm_year = year};
  }

  std::int64_t instant = -1;
  std::int16_t year = 0;
  std::int8_t month = 0;
  std::int8_t day = 0;
  std::int8_t hour = 0;
  std::int8_t minute = 0;
  std::int8_t second = 0;
};
static_assert(sizeof(RowTime) == 16);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
