#pragma once

#include <cstdint>

#include "base/date_time.h"

// The seam to the C library's clock and local calendar: one Windows body, one native twin.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// Seconds since 1970 in UTC, now (`_time64`).
std::int64_t CurrentInstant();

/// The instant of a local time, which is normalised in place as `mktime` does; -1, and `local`
/// untouched, for times before 1970 or after the year 3000.
std::int64_t MakeInstant(DateTime& local);

/// The instant of a copy.
std::int64_t InstantOf(DateTime local);

/// The local time of an instant (`_localtime64_s`); all fields -1 where it has none.
DateTime LocalTimeOf(std::int64_t instant);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
