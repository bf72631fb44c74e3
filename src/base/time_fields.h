#pragma once

#include "base/calendar.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// What was read of a text.
enum class TimeFields {
  kNone,  ///< not even a year
  kSome,  ///< a year, and perhaps more
  /// Unknown: which characters beyond ASCII are blanks or digits depends on the locale, and the
  /// caller has to ask std::get_time.
  kForeign,
};

/// Reads the fields of a time as std::get_time reads them with the formats of date_text.h: blanks
/// at the start are skipped, a field may have fewer digits than its width, the fields in front of a
/// fault are kept, and what follows the time is not looked at. `separator` stands between date and
/// time of day, in either case; 0 for a date alone. Sets the six fields of date and time of day in
/// `fields`, which is all zero before.
[[nodiscard]] TimeFields ReadTimeFields(const char* text, char separator, DateTime& fields);
[[nodiscard]] TimeFields ReadTimeFields(const wchar_t* text, char separator, DateTime& fields);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
