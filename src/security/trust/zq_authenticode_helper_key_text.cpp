#include "security/trust/zq_authenticode_helper.h"

namespace Zq::Gantry::Security {

std::string ZQAuthenticodeHelper::BytesToHexText(const std::uint8_t* bytes, std::size_t count) {
  static constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  if (bytes == nullptr) return text;

  text.reserve(count * 3);
  for (std::size_t i = 0; i < count; ++i) {
    text += kDigits[bytes[i] >> 4];
    text += kDigits[bytes[i] & 0x0F];
    text += ' ';
  }
  return text;
}

std::string ZQAuthenticodeHelper::TrimText(const std::string& text, const char* characters) {
  const std::size_t first = text.find_first_not_of(characters);
  // Kept on purpose: with nothing left, `first` is npos and substr throws std::out_of_range.
  return text.substr(first, text.find_last_not_of(characters) - first + 1);
}

}  // namespace Zq::Gantry::Security
