#pragma once

#include <array>
#include <string>
#include <string_view>

#include "base/calendar.h"

// Dates as text. The formats are those of the C library's strftime.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// "2024-03-01": names of sample files, keys of the ledger.
inline constexpr char kDateFormat[] = "%Y-%m-%d";
/// "2024-03-01T10:30:15": the time of a sample.
inline constexpr char kSampleTimeFormat[] = "%Y-%m-%dT%T";
/// "2024-03-01:10:30:15": the time of a row of the energy report and of its store.
inline constexpr char kTimeStampFormat[] = "%Y-%m-%d:%T";

/// The date in kDateFormat. Empty if a field is outside its range in the calendar: given such a
/// field, some C libraries end the process.
[[nodiscard]] std::wstring FormatDateWide(const DateTime& time);

/// The time in `format`. "%T" works with every C library; names of days and months follow its
/// locale. Empty for a null format, a field outside its range, and a text of more than 511 bytes.
[[nodiscard]] std::string FormatDateTime(const DateTime& time, const char* format);

/// Space for the longest text of WriteTimeStamp and WriteDate.
using DateBuffer = std::array<char, 20>;

/// What FormatDateTime returns for kTimeStampFormat, in `buffer`: for texts that are written once a
/// row.
[[nodiscard]] std::string_view WriteTimeStamp(const DateTime& time, DateBuffer& buffer);

/// The same for kDateFormat.
[[nodiscard]] std::string_view WriteDate(const DateTime& time, DateBuffer& buffer);

/// The time in the format "%T %d-%m-%Y"; empty for a field outside its range.
[[nodiscard]] std::string FormatLogTime(const DateTime& time);

/// Sets `result` to what ReadTimeFields reads from `text`, normalised as `mktime` does except for
/// the hour, which stays as read. `format` is one of the three above. Failure is not reported:
/// fields that the text does not reach are zero, and so are all fields for a null argument. Returns
/// `result`.
DateTime& ParseDateTime(DateTime& result, const char* text, const char* format);

/// The same for wide text in kTimeStampFormat. With characters beyond ASCII it is what
/// std::get_time reads.
DateTime& ParseWideDateTime(DateTime& result, const wchar_t* text);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
