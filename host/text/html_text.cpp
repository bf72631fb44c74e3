#include "text/html_text.h"

#include <algorithm>
#include <array>

#include "base/utf8_text.h"

namespace WattleafHost {

namespace {

namespace Wattleaf = Zq::Gantry::Server::Services::Wattleaf;

constexpr std::size_t kMostBytesOfACharacter = 4;

struct CodeRange {
  char32_t first;
  char32_t last;
};

/// Characters without a shape of their own that break, reorder or hide text. The two joiners U+200C
/// and U+200D are left out: names in several scripts need them.
constexpr auto kUnsafe = std::to_array<CodeRange>({
    {0x0000, 0x001F},    // control characters
    {0x007F, 0x009F},    // more of them
    {0x061C, 0x061C},    // Arabic letter mark
    {0x180E, 0x180E},    // Mongolian vowel separator
    {0x200B, 0x200B},    // zero width space
    {0x200E, 0x200F},    // direction marks
    {0x2028, 0x202E},    // line separators, embeddings and overrides of direction
    {0x2060, 0x206F},    // word joiner, invisible operators, isolates
    {0xFE00, 0xFE0F},    // variation selectors
    {0xFEFF, 0xFEFF},    // byte order mark
    {0xFFF9, 0xFFFB},    // annotations
    {0xFFFE, 0xFFFF},    // not characters
    {0xE0000, 0xE0FFF},  // tags and more variation selectors
});

bool IsUnsafe(char32_t code) {
  return std::any_of(kUnsafe.begin(), kUnsafe.end(), [code](const CodeRange& range) {
    return code >= range.first && code <= range.last;
  });
}

std::size_t ByteCount(char lead) {
  const auto byte = static_cast<unsigned char>(lead);
  if (byte < 0xC0) return 1;
  if (byte < 0xE0) return 2;
  return byte < 0xF0 ? 3 : 4;
}

/// `bytes` is one character of valid UTF-8.
char32_t CodeOf(std::string_view bytes) {
  constexpr std::array<unsigned char, 5> kLeadBits = {0, 0x7F, 0x1F, 0x0F, 0x07};
  char32_t code = static_cast<unsigned char>(bytes.front()) & kLeadBits.at(bytes.size());
  for (const char byte : bytes.substr(1)) {
    code = (code << 6) | (static_cast<unsigned char>(byte) & 0x3F);
  }
  return code;
}

std::string_view Written(std::string_view character) {
  if (IsUnsafe(CodeOf(character))) return "\xEF\xBF\xBD";
  if (character == "&") return "&amp;";
  if (character == "<") return "&lt;";
  if (character == ">") return "&gt;";
  if (character == "\"") return "&quot;";
  return character == "'" ? "&#39;" : character;
}

}  // namespace

std::string HtmlText(std::string_view utf8, std::size_t limit) {
  // Always more than `limit` characters, if the text has them.
  const std::string_view head = utf8.substr(0, (limit + 2) * kMostBytesOfACharacter);
  const std::string valid = Wattleaf::ToUtf8(Wattleaf::FromUtf8(head));
  std::string html;
  std::string withoutLast;
  std::size_t count = 0;
  for (std::size_t at = 0; at < valid.size(); ++count) {
    if (count == limit) return withoutLast + "\xE2\x80\xA6";
    if (count + 1 == limit) withoutLast = html;
    const std::string_view character = std::string_view(valid).substr(at, ByteCount(valid[at]));
    html += Written(character);
    at += character.size();
  }
  return html;
}

}  // namespace WattleafHost
