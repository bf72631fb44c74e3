#include "security/pattern/character_set.h"

#include <algorithm>
#include <string_view>

namespace Zq::Gantry::Security {

namespace {

constexpr char16_t kLastCharacter = 0xFFFF;

}  // namespace

void CharacterSet::Add(const CharacterSet& other) {
  ranges_.insert(ranges_.end(), other.ranges_.begin(), other.ranges_.end());
}

std::vector<CharacterRange> CharacterSet::Ranges() const {
  std::vector<CharacterRange> sorted = ranges_;
  std::ranges::sort(sorted, {}, &CharacterRange::first);
  std::vector<CharacterRange> merged;
  for (const CharacterRange& range : sorted) {
    if (!merged.empty() && range.first <= merged.back().last + 1) {
      merged.back().last = std::max(merged.back().last, range.last);
    } else {
      merged.push_back(range);
    }
  }
  return merged;
}

CharacterSet CharacterSet::Complement() const {
  CharacterSet others;
  int next = 0;  // the first character above the ranges seen so far
  for (const CharacterRange& range : Ranges()) {
    if (range.first > next) {
      others.Add(static_cast<char16_t>(next), static_cast<char16_t>(range.first - 1));
    }
    next = range.last + 1;
  }
  if (next <= kLastCharacter) others.Add(static_cast<char16_t>(next), kLastCharacter);
  return others;
}

std::u16string EscapedCharacter(char16_t character) {
  constexpr std::u16string_view kDigits = u"0123456789ABCDEF";
  std::u16string text = u"\\x{";
  for (const int shift : {12, 8, 4, 0}) text += kDigits[character >> shift & 0xF];
  return text + u'}';
}

std::u16string ClassText(const CharacterSet& set) {
  std::vector<CharacterRange> ranges = set.Ranges();
  bool isInverted = !ranges.empty() && ranges.back().last == kLastCharacter;
  if (isInverted) ranges = set.Complement().Ranges();
  if (ranges.empty()) {
    // PCRE2 has no empty class that can be repeated: all characters, or all but all.
    ranges = {{0, kLastCharacter}};
    isInverted = !isInverted;
  }
  std::u16string text = isInverted ? u"[^" : u"[";
  for (const auto& [first, last] : ranges) {
    text += EscapedCharacter(first);
    if (last > first) text += u'-' + EscapedCharacter(last);
  }
  return text + u']';
}

}  // namespace Zq::Gantry::Security
