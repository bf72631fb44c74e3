#include "text/csv_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

namespace WattleafHost {

namespace {

constexpr std::string_view kFormulaStarts = "=+-@\t\r";
constexpr std::string_view kQuotedCharacters = ",\"\r\n";

}  // namespace

std::string CsvField(const std::string& text) {
  const bool isFormula =
      !text.empty() && kFormulaStarts.find(text.front()) != std::string_view::npos;
  std::string harmless = isFormula ? "'" + text : text;
  if (harmless.find_first_of(kQuotedCharacters) == std::string::npos) return harmless;
  std::string quoted = "\"";
  for (const char character : harmless) {
    if (character == '"') quoted += '"';
    quoted += character;
  }
  return quoted + '"';
}

std::string CsvField(double value) {
  if (!std::isfinite(value)) return {};
  std::array<char, 32> digits{};
  const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), value);
  return {digits.data(), written.ptr};
}

std::string CsvRecord(const std::vector<std::string>& fields) {
  std::string record;
  for (const std::string& field : fields) record += (&field == fields.data() ? "" : ",") + field;
  return record + "\r\n";
}

}  // namespace WattleafHost
