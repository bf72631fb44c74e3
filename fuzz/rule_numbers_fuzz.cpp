// Any number against any limits: its text reads back as the number and is no longer than the
// shortest one with an exponent, and the limits are those that the C library reads. The first eight
// bytes are the number, the next two lines the limits; a line "-" is no limit.
#include <bit>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>

#include "fuzz_input.h"
#include "security/access/rule_judges.h"

using namespace Zq::Gantry::Security;
using Fuzz::Require;

namespace {

enum class Answer { kInside, kOutside, kNoRange };

/// With an exponent, and as few digits as read back as the number.
std::string LiteralNumberText(double number) {
  char text[64];
  for (int digits = 0; digits < 17; ++digits) {
    std::snprintf(text, sizeof(text), "%.*e", digits, number);
    if (std::strtod(text, nullptr) == number) break;
  }
  return text;
}

void CheckText(double number) {
  const std::wstring text = ShortestNumberText(number);
  const std::string narrow(text.begin(), text.end());
  Require(std::bit_cast<std::uint64_t>(std::strtod(narrow.c_str(), nullptr)) ==
          std::bit_cast<std::uint64_t>(number));
  Require(narrow.size() <= LiteralNumberText(number).size());
}

/// Absent for a text without a number; throws std::out_of_range for one beyond 32 bits.
std::optional<long> LiteralLimit(const std::string& text) {
  char* end = nullptr;
  errno = 0;
  const long limit = std::strtol(text.c_str(), &end, 10);
  if (end == text.c_str()) return std::nullopt;
  using Limits = std::numeric_limits<std::int32_t>;
  if (errno == ERANGE || limit < Limits::min() || limit > Limits::max()) {
    throw std::out_of_range(text);
  }
  return limit;
}

bool IsLimit(const std::string& line) { return line != "-"; }

Answer LiteralAnswer(double number, const std::string& least, const std::string& most) try {
  if (std::isnan(number)) return Answer::kOutside;
  const double whole = number < 0 ? std::ceil(number) : std::floor(number);
  for (const std::string* text : {&least, &most}) {
    if (!IsLimit(*text)) continue;
    const auto limit = LiteralLimit(*text);
    if (!limit) return Answer::kOutside;
    const auto bound = static_cast<double>(*limit);
    if (text == &least ? whole < bound : whole > bound) return Answer::kOutside;
  }
  return Answer::kInside;
} catch (const std::out_of_range&) {
  return Answer::kNoRange;
}

Answer AnswerOf(double number, const std::string& least, const std::string& most) try {
  const bool isInside =
      LiesInNumericRange(number, [&](const std::wstring& name) -> std::optional<std::wstring> {
        const std::string& text = name == L"min" ? least : most;
        if (!IsLimit(text)) return std::nullopt;
        return std::wstring(text.begin(), text.end());
      });
  return isInside ? Answer::kInside : Answer::kOutside;
} catch (const std::out_of_range&) {
  return Answer::kNoRange;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Fuzz::Input input(data, size);
  const double number = std::bit_cast<double>(input.Number(8));
  const std::string least = input.Line();
  const std::string most = input.Line();
  if (!std::isnan(number)) CheckText(number);
  Require(AnswerOf(number, least, most) == LiteralAnswer(number, least, most));
  return 0;
}
