#pragma once

#include <string>

namespace WattleafHost {

/// An ISO 8601 time with the zone's offset, as "22 November 2026, 14:00 (UTC+01:00)". A text of
/// another form is returned unchanged.
[[nodiscard]] std::string LongMoment(const std::string& iso);

/// The same as "2026-11-22 14:00".
[[nodiscard]] std::string ShortMoment(const std::string& iso);

}  // namespace WattleafHost
