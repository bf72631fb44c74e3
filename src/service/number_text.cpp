#include "service/number_text.h"

#include <cstdio>

namespace Zq::Gantry::Server::Services::Wattleaf {

std::wstring FloatToWideString(float value) {
  const double widened = static_cast<double>(value);
  const int length = std::snprintf(nullptr, 0, "%f", widened);
  if (length <= 0) return {};
  std::string text(static_cast<std::size_t>(length), '\0');
  std::snprintf(text.data(), text.size() + 1, "%f", widened);
  return {text.begin(), text.end()};
}

std::wstring IntToWideString(int value) { return std::to_wstring(value); }

}  // namespace Zq::Gantry::Server::Services::Wattleaf
