#include "text/printable.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace WattleafHost {

namespace {

bool IsContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

bool IsControl(char byte) {
  const auto code = static_cast<unsigned char>(byte);
  return code < 0x20 || code == 0x7F;
}

/// The first `count` characters.
std::string Head(const std::string& utf8, std::size_t count) {
  std::size_t end = 0;
  for (; end < utf8.size(); ++end) {
    if (IsContinuation(utf8[end])) continue;
    if (count == 0) break;
    --count;
  }
  return utf8.substr(0, end);
}

}  // namespace

std::size_t CharacterCount(const std::string& utf8) {
  return static_cast<std::size_t>(
      std::count_if(utf8.begin(), utf8.end(), [](char byte) { return !IsContinuation(byte); }));
}

std::string OneLine(const std::string& utf8, std::size_t limit) {
  static const std::string kCut = "...";
  const bool fits = CharacterCount(utf8) <= limit;
  std::string line = fits ? utf8 : Head(utf8, limit - std::min(limit, kCut.size())) + kCut;
  std::replace_if(line.begin(), line.end(), IsControl, '?');
  return line;
}

std::string PadRight(std::string utf8, std::size_t width) {
  const std::size_t length = CharacterCount(utf8);
  if (length < width) utf8.append(width - length, ' ');
  return utf8;
}

std::string PadLeft(const std::string& utf8, std::size_t width) {
  const std::size_t length = CharacterCount(utf8);
  return length < width ? std::string(width - length, ' ') + utf8 : utf8;
}

std::string TwoDigits(double value) {
  // The largest double has 309 digits before the decimal point.
  std::array<char, 320> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%.2f", value);
  return buffer.data();
}

}  // namespace WattleafHost
