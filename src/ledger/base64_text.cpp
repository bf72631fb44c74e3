#include "ledger/base64_text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

constexpr std::string_view kAlphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::string_view kLineEnd = "\r\n";
constexpr std::size_t kGroupChars = 4;
constexpr std::size_t kGroupBytes = 3;

/// Has a bit that no value has.
constexpr std::uint8_t kNoValue = 0x80;

/// The value of each character, or kNoValue.
constexpr std::array<std::uint8_t, 256> kValues = [] {
  std::array<std::uint8_t, 256> values{};
  values.fill(kNoValue);
  for (std::size_t i = 0; i < kAlphabet.size(); ++i) {
    values[static_cast<unsigned char>(kAlphabet[i])] = static_cast<std::uint8_t>(i);
  }
  return values;
}();

/// Decodes four characters to three bytes. False if one is not of the alphabet.
bool DecodeGroup(const char* chars, char* bytes) {
  const auto value = [chars](std::size_t i) -> unsigned {
    return kValues[static_cast<unsigned char>(chars[i])];
  };
  const unsigned a = value(0);
  const unsigned b = value(1);
  const unsigned c = value(2);
  const unsigned d = value(3);
  bytes[0] = static_cast<char>(a << 2 | b >> 4);
  bytes[1] = static_cast<char>(b << 4 | c >> 2);
  bytes[2] = static_cast<char>(c << 6 | d);
  return ((a | b | c | d) & kNoValue) == 0;
}

}  // namespace

std::optional<std::string> TryDecodeBase64(std::string_view text) {
  if (text.ends_with(kLineEnd)) text.remove_suffix(kLineEnd.size());
  if (text.size() < kGroupChars) return std::nullopt;
  std::string last(text.substr(text.size() - kGroupChars));
  text.remove_suffix(kGroupChars);

  std::string bytes(text.size() / kGroupChars * kGroupBytes + kGroupBytes, '\0');
  char* end = bytes.data();
  while (text.size() >= kGroupChars) {
    if (!DecodeGroup(text.data(), end)) return std::nullopt;
    end += kGroupBytes;
    text.remove_prefix(kGroupChars);
    if (text.starts_with(kLineEnd)) text.remove_prefix(kLineEnd.size());
  }
  if (!text.empty()) return std::nullopt;

  // Padding counts as zeros, and the bytes that it completes are dropped. If one of them is not
  // zero, the character before the padding has bits that belong to no byte.
  const std::size_t padding = last.ends_with("==") ? 2 : last.ends_with('=') ? 1 : 0;
  std::fill(last.end() - static_cast<std::ptrdiff_t>(padding), last.end(), kAlphabet.front());
  if (!DecodeGroup(last.data(), end)) return std::nullopt;
  end += kGroupBytes;
  if (!std::all_of(end - padding, end, [](char byte) { return byte == '\0'; })) return std::nullopt;
  bytes.resize(static_cast<std::size_t>(end - bytes.data()) - padding);
  return bytes;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
