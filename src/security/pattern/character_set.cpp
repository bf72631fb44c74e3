#include "security/pattern/character_set.h"

#include <algorithm>
#include <array>

namespace Zq::Gantry::Security {

namespace {

constexpr char16_t kLastCharacter = 0xFFFF;

using namespace std::string_view_literals;

struct NamedClass {
  std::u16string_view name;
  std::u16string_view ranges;  ///< pairs of first and last character
};

constexpr std::array kClasses = {
    NamedClass{u"alnum", u"09AZaz"},   NamedClass{u"alpha", u"AZaz"},
    NamedClass{u"blank", u"\t\t  "},   NamedClass{u"cntrl", u"\0\x1F\x7F\x7F"sv},
    NamedClass{u"digit", u"09"},       NamedClass{u"graph", u"!~"},
    NamedClass{u"lower", u"az"},       NamedClass{u"print", u" ~"},
    NamedClass{u"punct", u"!/:@[`{~"}, NamedClass{u"space", u"\t\r  "},
    NamedClass{u"upper", u"AZ"},       NamedClass{u"xdigit", u"09AFaf"},
    NamedClass{u"d", u"09"},           NamedClass{u"s", u"\t\r  "},
    NamedClass{u"w", u"09AZ__az"},
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

std::optional<CharacterSet> FindCharacterClass(std::u16string_view name) {
  for (const NamedClass& known : kClasses) {
    if (!EqualInAnyCase(known.name, name)) continue;
    CharacterSet set;
    for (std::size_t i = 0; i < known.ranges.size(); i += 2) {
      set.Add(known.ranges[i], known.ranges[i + 1]);
    }
    return set;
  }
  return std::nullopt;
}

std::optional<char16_t> FindCollatingElement(std::u16string_view name) {
  if (name.size() == 1) return name.front();
  const auto known = std::ranges::find(kCharacters, name, &NamedCharacter::name);
  if (known == kCharacters.end()) return std::nullopt;
  return known->character;
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
    // PCRE2 has no empty class that can be repeated, so this is the class of all characters, or its
    // inverse.
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
