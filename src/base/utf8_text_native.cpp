#include "base/utf8_text.h"

#include <algorithm>
#include <array>

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsScalarValue(char32_t point) {
  return point < 0x110000 && (point < 0xD800 || point > 0xDFFF);
}

void AppendUtf8(char32_t point, std::string& text) {
  if (!IsScalarValue(point)) point = kReplacement;
  const auto tail = [point](int shift) {
    return static_cast<char>(0x80 | (point >> shift & 0x3F));
  };
  if (point < 0x80) {
    text += static_cast<char>(point);
  } else if (point < 0x800) {
    text += {static_cast<char>(0xC0 | point >> 6), tail(0)};
  } else if (point < 0x10000) {
    text += {static_cast<char>(0xE0 | point >> 12), tail(6), tail(0)};
  } else {
    text += {static_cast<char>(0xF0 | point >> 18), tail(12), tail(6), tail(0)};
  }
}

/// The length in bytes of the sequence that begins with `lead`; 0 if no sequence begins with it.
std::size_t SequenceLength(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead < 0xC2 || lead > 0xF4) return 0;
  return lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

/// Takes one character off the front; an incomplete sequence becomes one replacement character.
char32_t TakePoint(std::string_view& text) {
  constexpr std::array<char32_t, 5> kSmallest{0, 0, 0x80, 0x800, 0x10000};
  const auto lead = static_cast<unsigned char>(text.front());
  text.remove_prefix(1);
  const std::size_t length = SequenceLength(lead);
  if (length <= 1) return length == 1 ? lead : kReplacement;
  char32_t point = lead & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const bool continues =
        !text.empty() && (static_cast<unsigned char>(text.front()) & 0xC0) == 0x80;
    if (!continues) return kReplacement;
    point = point << 6 | (static_cast<unsigned char>(text.front()) & 0x3F);
    text.remove_prefix(1);
  }
  return IsScalarValue(point) && point >= kSmallest[length] ? point : kReplacement;
}

}  // namespace

std::string ToUtf8(std::wstring_view text) {
  const auto isAscii = [](wchar_t c) { return static_cast<char32_t>(c) < 0x80; };
  const auto other = std::find_if_not(text.begin(), text.end(), isAscii);
  std::string result(text.begin(), other);
  for (const wchar_t point : text.substr(result.size())) {
    AppendUtf8(static_cast<char32_t>(point), result);
  }
  return result;
}

std::wstring FromUtf8(std::string_view text) {
  std::wstring result;
  while (!text.empty()) result += static_cast<wchar_t>(TakePoint(text));
  return result;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
