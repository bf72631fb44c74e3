#include "service/result_text.h"

#include <charconv>
#include <cstdlib>
#include <limits>

#include "service/command_table.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

constexpr int kDecimalPlaces = 6;
// A sign, the digits of the largest float, the point and its decimal places.
constexpr std::size_t kMostChars =
    1 + std::numeric_limits<float>::max_exponent10 + 1 + 1 + kDecimalPlaces;

}  // namespace

// The digits of "%f". printf is not used, since its decimal point is that of the host's locale.
std::wstring FloatToWideString(float value) {
  std::string text(kMostChars, '\0');
  const auto end = std::to_chars(text.data(), text.data() + text.size(), static_cast<double>(value),
                                 std::chars_format::fixed, kDecimalPlaces)
                       .ptr;
  return {text.data(), end};
}

std::wstring IntToWideString(int value) { return std::to_wstring(value); }

bool HandOver(const std::wstring& result, wchar_t** output) {
  const std::size_t chars = result.size() + 1;
  if (output == nullptr || result.empty() || chars > kLargestResultChars) return false;

  auto* block = static_cast<wchar_t*>(std::malloc(chars * sizeof(wchar_t)));
  if (block == nullptr) return false;
  result.copy(block, result.size());
  block[result.size()] = L'\0';
  *output = block;
  return true;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
