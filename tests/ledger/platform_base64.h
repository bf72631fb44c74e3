#pragma once

#include <windows.h>

#include <wincrypt.h>

#include <cstddef>
#include <optional>
#include <random>
#include <string>
#include <string_view>

namespace TestSupport {

/// The bytes of Base64 text by two calls of the platform, of which the first returns their number;
/// empty if the text is not Base64.
inline std::optional<std::string> PlatformBase64(const std::string& text) {
  const auto chars = static_cast<DWORD>(text.size());
  DWORD size = 0;
  if (!CryptStringToBinaryA(text.data(), chars, CRYPT_STRING_BASE64, nullptr, &size, nullptr,
                            nullptr)) {
    return std::nullopt;
  }
  std::string bytes(size + 1, '\0');
  if (!CryptStringToBinaryA(text.data(), chars, CRYPT_STRING_BASE64,
                            reinterpret_cast<BYTE*>(bytes.data()), &size, nullptr, nullptr)) {
    return std::nullopt;
  }
  bytes.resize(size);
  return bytes;
}

/// A text of up to 40 characters, mostly those of Base64.
inline std::string AlmostBase64(std::mt19937& random) {
  static constexpr std::string_view kAlphabet =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  static constexpr std::string_view kOdd{"= \r\n\t=-_!.\0\xFF", 12};
  std::string text(1 + random() % 40, '\0');
  const std::size_t oddShare = 4 + random() % 60;
  for (char& c : text) {
    c = random() % oddShare == 0 ? kOdd[random() % kOdd.size()]
                                 : kAlphabet[random() % kAlphabet.size()];
  }
  return text + std::string(random() % 3, '=');
}

}  // namespace TestSupport
