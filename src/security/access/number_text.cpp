#include "security/access/number_text.h"

#include <array>
#include <charconv>

namespace Zq::Gantry::Security {

std::wstring ShortestNumberText(double number) {
  std::array<char, 32> text{};  // 24 characters at most: "-1.2345678901234567e-308"
  const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), number);
  return std::wstring(text.data(), end);
}

}  // namespace Zq::Gantry::Security
