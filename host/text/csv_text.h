#pragma once

#include <string>
#include <vector>

// Comma-separated values after RFC 4180, in UTF-8, for spreadsheets and databases.
namespace WattleafHost {

/// A text as a field. It is quoted if it has a comma, a quotation mark or a line break. A text that
/// a spreadsheet would take for a formula, since it begins with "=", "+", "-", "@", a tab or a
/// carriage return, gets an apostrophe before it: names come from files that others can write.
[[nodiscard]] std::string CsvField(const std::string& text);

/// A number as a field, with as many digits as are needed to read the same value; empty if it is
/// not finite.
[[nodiscard]] std::string CsvField(double value);

/// Fields as a record, with "\r\n" at its end.
[[nodiscard]] std::string CsvRecord(const std::vector<std::string>& fields);

}  // namespace WattleafHost
