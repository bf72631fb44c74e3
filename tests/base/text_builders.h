#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// Texts for tests that feed bytes to a parser or compare generated texts.
namespace TestSupport {

/// `part`, `count` times.
[[nodiscard]] inline std::string Repeated(std::string_view part, std::size_t count) {
  std::string text;
  text.reserve(part.size() * count);
  for (std::size_t i = 0; i < count; ++i) text += part;
  return text;
}

/// The bytes of an ASCII text in UTF-16LE, without a byte order mark.
[[nodiscard]] inline std::string Utf16(std::string_view text) {
  std::string bytes;
  bytes.reserve(2 * text.size());
  for (const char c : text) bytes += {c, '\0'};
  return bytes;
}

/// The FNV-1a hash of a text.
[[nodiscard]] inline std::uint64_t Fingerprint(std::string_view text) {
  std::uint64_t hash = 0xCBF29CE484222325ULL;
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3ULL;
  return hash;
}

}  // namespace TestSupport
