#pragma once

#include <string>

#include "base/calendar.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

inline constexpr char kDateFormat[] = "%Y-%m-%d";
inline constexpr char kSampleTimeFormat[] = "%Y-%m-%dT%T";
inline constexpr char kTimeStampFormat[] = "%Y-%m-%d:%T";

/// "%Y-%m-%d", wide. Like its narrow sisters empty for a field outside the calendar.
std::wstring FormatDateWide(const DateTime& time);

/// `format` as for strftime, at most 511 bytes of result. "%T" works on every C library.
std::string FormatDateTime(const DateTime& time, const char* format);

/// "%T %d-%m-%Y".
std::string FormatLogTime(const DateTime& time);

/// Reads `text` as std::get_time does and normalises all but the hour. A text that does not fit
/// leaves the fields that were not reached at zero and reports nothing; a null argument leaves all
/// zero. Returns `result`.
DateTime& ParseDateTime(DateTime& result, const char* text, const char* format);

/// The wide twin, for "%Y-%m-%d:%T".
DateTime& ParseWideDateTime(DateTime& result, const wchar_t* text);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
