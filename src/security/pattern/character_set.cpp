#include "security/pattern/character_set.h"

#include <algorithm>
#include <array>
#include <utility>

namespace Zq::Gantry::Security {

namespace {

constexpr char16_t kLastCharacter = 0xFFFF;

constexpr CharacterRange kAlnum[] = {{u'0', u'9'}, {u'A', u'Z'}, {u'a', u'z'}};
constexpr CharacterRange kAlpha[] = {{u'A', u'Z'}, {u'a', u'z'}};
constexpr CharacterRange kBlank[] = {{u'\t', u'\t'}, {u' ', u' '}};
constexpr CharacterRange kCntrl[] = {{u'\0', u'\x1F'}, {u'\x7F', u'\x7F'}};
constexpr CharacterRange kDigit[] = {{u'0', u'9'}};
constexpr CharacterRange kGraph[] = {{u'!', u'~'}};
constexpr CharacterRange kLower[] = {{u'a', u'z'}};
constexpr CharacterRange kPrint[] = {{u' ', u'~'}};
constexpr CharacterRange kPunct[] = {{u'!', u'/'}, {u':', u'@'}, {u'[', u'`'}, {u'{', u'~'}};
constexpr CharacterRange kSpace[] = {{u'\t', u'\r'}, {u' ', u' '}};
constexpr CharacterRange kUpper[] = {{u'A', u'Z'}};
constexpr CharacterRange kXdigit[] = {{u'0', u'9'}, {u'A', u'F'}, {u'a', u'f'}};
constexpr CharacterRange kWord[] = {{u'0', u'9'}, {u'A', u'Z'}, {u'_', u'_'}, {u'a', u'z'}};

struct NamedClass {
  std::u16string_view name;
  std::span<const CharacterRange> ranges;
};

constexpr std::array kClasses = {
    NamedClass{u"alnum", kAlnum}, NamedClass{u"alpha", kAlpha}, NamedClass{u"blank", kBlank},
    NamedClass{u"cntrl", kCntrl}, NamedClass{u"digit", kDigit}, NamedClass{u"graph", kGraph},
    NamedClass{u"lower", kLower}, NamedClass{u"print", kPrint}, NamedClass{u"punct", kPunct},
    NamedClass{u"space", kSpace}, NamedClass{u"upper", kUpper}, NamedClass{u"xdigit", kXdigit},
    NamedClass{u"d", kDigit},     NamedClass{u"s", kSpace},     NamedClass{u"w", kWord},
};

struct NamedCharacter {
  std::u16string_view name;
  char16_t character;
};

constexpr std::array kCharacters = {
    NamedCharacter{u"NUL", 0x00},
    NamedCharacter{u"SOH", 0x01},
    NamedCharacter{u"STX", 0x02},
    NamedCharacter{u"ETX", 0x03},
    NamedCharacter{u"EOT", 0x04},
    NamedCharacter{u"ENQ", 0x05},
    NamedCharacter{u"ACK", 0x06},
    NamedCharacter{u"alert", 0x07},
    NamedCharacter{u"backspace", 0x08},
    NamedCharacter{u"tab", 0x09},
    NamedCharacter{u"newline", 0x0A},
    NamedCharacter{u"vertical-tab", 0x0B},
    NamedCharacter{u"form-feed", 0x0C},
    NamedCharacter{u"carriage-return", 0x0D},
    NamedCharacter{u"SO", 0x0E},
    NamedCharacter{u"SI", 0x0F},
    NamedCharacter{u"DLE", 0x10},
    NamedCharacter{u"DC1", 0x11},
    NamedCharacter{u"DC2", 0x12},
    NamedCharacter{u"DC3", 0x13},
    NamedCharacter{u"DC4", 0x14},
    NamedCharacter{u"NAK", 0x15},
    NamedCharacter{u"SYN", 0x16},
    NamedCharacter{u"ETB", 0x17},
    NamedCharacter{u"CAN", 0x18},
    NamedCharacter{u"EM", 0x19},
    NamedCharacter{u"SUB", 0x1A},
    NamedCharacter{u"ESC", 0x1B},
    NamedCharacter{u"IS4", 0x1C},
    NamedCharacter{u"IS3", 0x1D},
    NamedCharacter{u"IS2", 0x1E},
    NamedCharacter{u"IS1", 0x1F},
    NamedCharacter{u"space", u' '},
    NamedCharacter{u"exclamation-mark", u'!'},
    NamedCharacter{u"quotation-mark", u'"'},
    NamedCharacter{u"number-sign", u'#'},
    NamedCharacter{u"dollar-sign", u'$'},
    NamedCharacter{u"percent-sign", u'%'},
    NamedCharacter{u"ampersand", u'&'},
    NamedCharacter{u"apostrophe", u'\''},
    NamedCharacter{u"left-parenthesis", u'('},
    NamedCharacter{u"right-parenthesis", u')'},
    NamedCharacter{u"asterisk", u'*'},
    NamedCharacter{u"plus-sign", u'+'},
    NamedCharacter{u"comma", u','},
    NamedCharacter{u"hyphen", u'-'},
    NamedCharacter{u"period", u'.'},
    NamedCharacter{u"slash", u'/'},
    NamedCharacter{u"zero", u'0'},
    NamedCharacter{u"one", u'1'},
    NamedCharacter{u"two", u'2'},
    NamedCharacter{u"three", u'3'},
    NamedCharacter{u"four", u'4'},
    NamedCharacter{u"five", u'5'},
    NamedCharacter{u"six", u'6'},
    NamedCharacter{u"seven", u'7'},
    NamedCharacter{u"eight", u'8'},
    NamedCharacter{u"nine", u'9'},
    NamedCharacter{u"colon", u':'},
    NamedCharacter{u"semicolon", u';'},
    NamedCharacter{u"less-than-sign", u'<'},
    NamedCharacter{u"equals-sign", u'='},
    NamedCharacter{u"greater-than-sign", u'>'},
    NamedCharacter{u"question-mark", u'?'},
    NamedCharacter{u"commercial-at", u'@'},
    NamedCharacter{u"left-square-bracket", u'['},
    NamedCharacter{u"backslash", u'\\'},
    NamedCharacter{u"right-square-bracket", u']'},
    NamedCharacter{u"circumflex", u'^'},
    NamedCharacter{u"underscore", u'_'},
    NamedCharacter{u"grave-accent", u'`'},
    NamedCharacter{u"left-curly-bracket", u'{'},
    NamedCharacter{u"vertical-line", u'|'},
    NamedCharacter{u"right-curly-bracket", u'}'},
    NamedCharacter{u"tilde", u'~'},
    NamedCharacter{u"DEL", 0x7F},
};
// All ASCII characters except the 52 letters, each of which is its own name.
static_assert(kCharacters.size() == 128 - 52);

char16_t ToLower(char16_t character) {
  return character >= u'A' && character <= u'Z' ? static_cast<char16_t>(character + (u'a' - u'A'))
                                                : character;
}

bool EqualInAnyCase(std::u16string_view left, std::u16string_view right) {
  return std::ranges::equal(left, right, {}, ToLower, ToLower);
}

/// Calls `take` with the ranges between, before and after `ranges`, which are those of a set.
template <typename Take>
void ForEachOther(std::span<const CharacterRange> ranges, Take take) {
  int next = 0;  // the first character above the ranges seen so far
  for (const auto& [first, last] : ranges) {
    if (first > next) take(static_cast<char16_t>(next), static_cast<char16_t>(first - 1));
    next = last + 1;
  }
  if (next <= kLastCharacter) take(static_cast<char16_t>(next), kLastCharacter);
}

}  // namespace

CharacterSet::CharacterSet(std::vector<CharacterRange> ranges) : ranges_(std::move(ranges)) {
  std::ranges::sort(ranges_, {}, &CharacterRange::first);
  std::size_t count = 0;  // of the ranges that remain
  for (const CharacterRange range : ranges_) {
    if (count > 0 && range.first <= ranges_[count - 1].last + 1) {
      ranges_[count - 1].last = std::max(range.last, ranges_[count - 1].last);
    } else {
      ranges_[count++] = range;
    }
  }
  ranges_.resize(count);
}

CharacterSet CharacterSet::Complement() const {
  CharacterSet others;
  AppendOthers(ranges_, others.ranges_);
  return others;
}

void AppendOthers(std::span<const CharacterRange> ranges, std::vector<CharacterRange>& others) {
  ForEachOther(ranges, [&](char16_t first, char16_t last) { others.push_back({first, last}); });
}

std::span<const CharacterRange> FindCharacterClass(std::u16string_view name) {
  const auto known = std::ranges::find_if(
      kClasses, [name](const NamedClass& row) { return EqualInAnyCase(row.name, name); });
  return known == kClasses.end() ? std::span<const CharacterRange>() : known->ranges;
}

std::optional<char16_t> FindCollatingElement(std::u16string_view name) {
  if (name.size() == 1) return name.front();
  const auto known = std::ranges::find(kCharacters, name, &NamedCharacter::name);
  if (known == kCharacters.end()) return std::nullopt;
  return known->character;
}

void AppendCharacter(char16_t character, std::u16string& text) {
  constexpr std::u16string_view kDigits = u"0123456789ABCDEF";
  char16_t form[] = u"\\x{0000}";
  form[3] = kDigits[character >> 12];
  form[4] = kDigits[character >> 8 & 0xF];
  form[5] = kDigits[character >> 4 & 0xF];
  form[6] = kDigits[character & 0xF];
  text.append(form, std::size(form) - 1);
}

void AppendClass(const CharacterSet& set, std::u16string& text) {
  const auto append = [&text](char16_t first, char16_t last) {
    AppendCharacter(first, text);
    if (last == first) return;
    text += u'-';
    AppendCharacter(last, text);
  };
  const std::span<const CharacterRange> ranges = set.Ranges();
  const bool hasLast = !ranges.empty() && ranges.back().last == kLastCharacter;
  const bool hasAll = hasLast && ranges.size() == 1 && ranges.front().first == 0;
  if (ranges.empty() || hasAll) {
    // PCRE2 has no empty class that can be repeated, so this is the class of all characters, or its
    // inverse.
    text += hasAll ? u"[" : u"[^";
    append(0, kLastCharacter);
  } else if (hasLast) {
    text += u"[^";
    ForEachOther(ranges, append);
  } else {
    text += u'[';
    for (const auto& [first, last] : ranges) append(first, last);
  }
  text += u']';
}

}  // namespace Zq::Gantry::Security
