#include "text/figure_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace WattleafHost {

namespace {

constexpr const char* kNoNumber = "-";

/// A value whose digits are all zeros has no sign. `value` is finite and below 10^15.
std::string Fixed(double value, int digits) {
  std::array<char, 64> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                 std::chars_format::fixed, digits)
                       .ptr;
  std::string text(buffer.data(), end);
  const bool isZero = text.find_first_of("123456789") == std::string::npos;
  if (isZero && text.front() == '-') text.erase(0, 1);
  return text;
}

std::string Scientific(double value, int digits) {
  std::array<char, 64> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                 std::chars_format::scientific, digits)
                       .ptr;
  return {buffer.data(), end};
}

/// Puts commas between the thousands of a text of Fixed.
std::string Grouped(std::string text) {
  const std::size_t point = std::min(text.find('.'), text.size());
  const std::size_t first = text.front() == '-' ? 1 : 0;
  for (std::size_t at = point; at > first + 3;) {
    at -= 3;
    text.insert(at, 1, ',');
  }
  return text;
}

}  // namespace

std::string FigureText(double value) {
  if (!std::isfinite(value)) return kNoNumber;
  return std::fabs(value) < 1e12 ? Grouped(Fixed(value, 2)) : Scientific(value, 2);
}

std::string ShortFigureText(double value) {
  if (!std::isfinite(value)) return kNoNumber;
  const double size = std::fabs(value);
  if (size == 0.0) return "0";
  if (value > 0.0 && value < 0.05) return "<0.1";
  if (size < 99.95) return Fixed(value, 1);
  return size < 999999.5 ? Grouped(Fixed(value, 0)) : Scientific(value, 1);
}

std::string LengthText(double length) {
  std::string text = Fixed(length, 2);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text;
}

}  // namespace WattleafHost
