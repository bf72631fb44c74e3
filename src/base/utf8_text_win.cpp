#include "base/utf8_text.h"

#include <windows.h>

namespace Zq::Gantry::Server::Services::Wattleaf {

// Both calls return 0 for an empty text, which gives an empty result, and take lengths of 31 bits.

std::string ToUtf8(std::wstring_view text) {
  const int chars = static_cast<int>(text.size());
  const int bytes =
      WideCharToMultiByte(CP_UTF8, 0, text.data(), chars, nullptr, 0, nullptr, nullptr);
  std::string result(static_cast<std::size_t>(bytes), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), chars, result.data(), bytes, nullptr, nullptr);
  return result;
}

std::wstring FromUtf8(std::string_view text) {
  const int bytes = static_cast<int>(text.size());
  const int chars = MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, nullptr, 0);
  std::wstring result(static_cast<std::size_t>(chars), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, result.data(), chars);
  return result;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
