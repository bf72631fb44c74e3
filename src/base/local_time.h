#pragma once

#include <cstdint>

#include "base/calendar.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// A local time and its instant: seconds since 1970 in UTC, -1 outside the calendar.
struct LocalTime {
  DateTime fields;
  std::int64_t instant = -1;
};

/// Whether all nine fields are equal.
[[nodiscard]] bool HasSameFields(const DateTime& left, const DateTime& right);

/// Whether all fields and the instants are equal.
[[nodiscard]] bool IsSameTime(const LocalTime& left, const LocalTime& right);

/// Sets `time` to what ParseDateTime and InstantOf make of the six fields of a text: the C library
/// is asked twice. False outside the calendar.
[[nodiscard]] bool TryNormalise(const DateTime& written, LocalTime& time);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
