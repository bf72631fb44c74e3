#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "base/calendar.h"

// Moments of the local calendar as other programs read them. An instant is a count of seconds since
// 1970 in UTC.
namespace WattleafHost {

/// "2026-11-22T14:00:00+01:00", with the zone's offset at that time. Empty outside the calendar of
/// the library, 1970 to 3000.
[[nodiscard]] std::string IsoTime(std::int64_t instant);

/// "2026-11-22".
[[nodiscard]] std::string IsoDate(std::chrono::sys_days date);

[[nodiscard]] std::chrono::sys_days DateOf(
    const Zq::Gantry::Server::Services::Wattleaf::DateTime& time);

/// The first instant of an hour (0 to 23) of a local date. Of an hour that comes twice, when the
/// clock is set back, the first one counts; one that is left out begins when the clock is set
/// forward. -1 outside the calendar.
[[nodiscard]] std::int64_t FirstInstantOf(std::chrono::sys_days date, int hour);

}  // namespace WattleafHost
