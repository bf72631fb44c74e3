#pragma once

#include <string_view>

#include "base/calendar.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// What was read of a text.
enum class TimeFields {
  kNone,  ///< not even a year
  kSome,  ///< a year, and perhaps more
  /// Unknown: which wide characters beyond ASCII are blanks or digits depends on the system's code
  /// page, and the caller has to ask std::get_time. Of wide text only.
  kForeign,
};

/// What stands between date and time of day in one of the formats of date_text.h; 0 for a date
/// alone.
[[nodiscard]] char SeparatorOf(std::string_view format);

/// Reads the fields of a time as libstdc++'s std::get_time reads them with the formats of
/// date_text.h, with every C++ library: blanks
/// at the start are skipped, a field may have fewer digits than its width, the fields in front of a
/// fault are kept, and what follows the time is not looked at. `separator` is that of the format,
/// in either case. Sets the six fields of date and time of day in
/// `fields`, which is all zero before.
[[nodiscard]] TimeFields ReadTimeFields(const char* text, char separator, DateTime& fields);
[[nodiscard]] TimeFields ReadTimeFields(const wchar_t* text, char separator, DateTime& fields);

/// Sets the day of the week and of the year as std::get_time of libstdc++ does, if need be from a
/// day and a month that are 0.
void FillDayOfWeekAndYear(DateTime& fields);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
