#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace TestSupport {

/// Base64 by the letter of RFC 4648, with a line end ("\r\n") allowed after each group of four
/// characters: six bits for each character, eight for each byte. The bits that fill no byte must be
/// zero.
inline std::optional<std::string> LiteralBase64(const std::string& text) {
  constexpr std::string_view kAlphabet =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string chars;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isLineEnd = text.compare(i, 2, "\r\n") == 0;
    const bool followsLineEnd = i >= 2 && text.compare(i - 2, 2, "\r\n") == 0;
    if (isLineEnd && !chars.empty() && chars.size() % 4 == 0 && !followsLineEnd) {
      ++i;
    } else {
      chars += text[i];
    }
  }
  if (chars.empty() || chars.size() % 4 != 0) return std::nullopt;
  const std::size_t padding = chars.size() - (chars.find_last_not_of('=') + 1);
  if (padding > 2) return std::nullopt;

  std::string bits;
  for (const char c : chars.substr(0, chars.size() - padding)) {
    const std::size_t value = kAlphabet.find(c);
    if (value == std::string_view::npos) return std::nullopt;
    for (int bit = 5; bit >= 0; --bit) bits += (value >> bit & 1) != 0 ? '1' : '0';
  }
  std::string bytes;
  for (; bits.size() >= 8; bits.erase(0, 8)) {
    bytes += static_cast<char>(std::stoi(bits.substr(0, 8), nullptr, 2));
  }
  if (bits.find('1') != std::string::npos) return std::nullopt;
  return bytes;
}

}  // namespace TestSupport
