#include "reports/decimal_text.h"

#include <algorithm>
#include <limits>

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

bool IsWhiteSpace(wchar_t c) { return c == L' ' || (c >= L'\t' && c <= L'\r'); }

bool IsDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

}  // namespace

std::int32_t DecimalNumber(const wchar_t* text) {
  constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
  constexpr std::int64_t kLeast = std::numeric_limits<std::int32_t>::min();

  while (IsWhiteSpace(*text)) ++text;
  const bool isNegative = *text == L'-';
  if (isNegative || *text == L'+') ++text;
  std::int64_t size = 0;
  for (; IsDigit(*text); ++text) size = std::min(size * 10 + (*text - L'0'), -kLeast);
  return static_cast<std::int32_t>(isNegative ? -size : std::min(size, kMost));
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
