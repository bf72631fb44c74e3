#include "reports/decimal_text.h"

#include <algorithm>
#include <limits>

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

constexpr wchar_t kWhiteSpace[] = L" \t\n\v\f\r";
constexpr std::int64_t kLargest = std::numeric_limits<std::int32_t>::max();

bool IsDigit(wchar_t character) { return character >= L'0' && character <= L'9'; }

}  // namespace

std::int32_t DecimalInt32(const std::wstring& text) {
  std::size_t at = text.find_first_not_of(kWhiteSpace);
  if (at == std::wstring::npos) return 0;
  const bool isNegative = text[at] == L'-';
  if (isNegative || text[at] == L'+') ++at;

  // The smallest number has a magnitude of one more than the largest.
  const std::int64_t limit = isNegative ? kLargest + 1 : kLargest;
  std::int64_t magnitude = 0;
  for (; at < text.size() && IsDigit(text[at]); ++at) {
    magnitude = std::min(magnitude * 10 + (text[at] - L'0'), limit);
  }
  return static_cast<std::int32_t>(isNegative ? -magnitude : magnitude);
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
