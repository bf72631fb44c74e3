#include "security/pattern/character_set.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace Zq::Gantry::Security {
namespace {

using Ranges = std::vector<std::pair<unsigned, unsigned>>;

Ranges RangesOf(const CharacterSet& set) {
  Ranges ranges;
  for (const auto& [first, last] : set.Ranges()) ranges.emplace_back(first, last);
  return ranges;
}

TEST(CharacterSet, JoinsRangesThatTouchOrOverlap) {
  EXPECT_EQ(RangesOf(CharacterSet({{20, 30}, {5, 5}, {31, 40}, {25, 28}, {42, 42}, {5, 5}})),
            (Ranges{{5, 5}, {20, 40}, {42, 42}}));
  EXPECT_EQ(RangesOf(CharacterSet({{7, 9}, {1, 8}})), (Ranges{{1, 9}}));
  EXPECT_EQ(RangesOf(CharacterSet({{0xFFFF, 0xFFFF}, {0, 3}})), (Ranges{{0, 3}, {0xFFFF, 0xFFFF}}));
  EXPECT_EQ(RangesOf(CharacterSet(std::vector<CharacterRange>())), Ranges{});
}

TEST(CharacterSet, ComplementsAtBothEnds) {
  EXPECT_EQ(RangesOf(CharacterSet({{5, 9}}).Complement()), (Ranges{{0, 4}, {10, 0xFFFF}}));
  EXPECT_EQ(RangesOf(CharacterSet({{5, 9}, {0, 0}, {0xFFFF, 0xFFFF}}).Complement()),
            (Ranges{{1, 4}, {10, 0xFFFE}}));
  EXPECT_EQ(RangesOf(CharacterSet({{0, 0xFFFE}}).Complement()), (Ranges{{0xFFFF, 0xFFFF}}));
  EXPECT_EQ(RangesOf(CharacterSet().Complement()), (Ranges{{0, 0xFFFF}}));
  EXPECT_EQ(RangesOf(CharacterSet().Complement().Complement()), Ranges{});
}

std::u16string ClassOf(const CharacterSet& set) {
  std::u16string text = u"before";
  AppendClass(set, text);
  return text;
}

TEST(AppendClass, WritesHexadecimalRangesAndInvertsASetWithTheLastCharacter) {
  EXPECT_EQ(ClassOf({}), u"before[^\\x{0000}-\\x{FFFF}]");
  EXPECT_EQ(ClassOf(CharacterSet().Complement()), u"before[\\x{0000}-\\x{FFFF}]");
  const CharacterSet set({{u'a', u'c'}, {u'\u20AC', u'\u20AC'}});
  EXPECT_EQ(ClassOf(set), u"before[\\x{0061}-\\x{0063}\\x{20AC}]");
  EXPECT_EQ(ClassOf(set.Complement()), u"before[^\\x{0061}-\\x{0063}\\x{20AC}]");
  EXPECT_EQ(ClassOf(CharacterSet({{u'\u1234', 0xFFFF}})), u"before[^\\x{0000}-\\x{1233}]");
  EXPECT_EQ(ClassOf(CharacterSet({{0, 0}, {0xFFFF, 0xFFFF}})), u"before[^\\x{0001}-\\x{FFFE}]");
}

TEST(AppendCharacter, WritesFourHexadecimalDigits) {
  std::u16string text;
  for (const char16_t character : {u'\0', u'\u0019', u'\uABCD', u'\uF0E2'}) {
    AppendCharacter(character, text);
  }
  EXPECT_EQ(text, u"\\x{0000}\\x{0019}\\x{ABCD}\\x{F0E2}");
}

TEST(FindCharacterClass, FindsEachClassInAnyCase) {
  const auto classOf = [](std::u16string_view name) {
    Ranges ranges;
    for (const auto& [first, last] : FindCharacterClass(name)) ranges.emplace_back(first, last);
    return ranges;
  };
  const Ranges digits{{'0', '9'}};
  const Ranges spaces{{9, 13}, {' ', ' '}};
  EXPECT_EQ(classOf(u"alnum"), (Ranges{{'0', '9'}, {'A', 'Z'}, {'a', 'z'}}));
  EXPECT_EQ(classOf(u"ALPHA"), (Ranges{{'A', 'Z'}, {'a', 'z'}}));
  EXPECT_EQ(classOf(u"blank"), (Ranges{{9, 9}, {' ', ' '}}));
  EXPECT_EQ(classOf(u"cntrl"), (Ranges{{0, 31}, {127, 127}}));
  EXPECT_EQ(classOf(u"digit"), digits);
  EXPECT_EQ(classOf(u"graph"), (Ranges{{33, 126}}));
  EXPECT_EQ(classOf(u"Lower"), (Ranges{{'a', 'z'}}));
  EXPECT_EQ(classOf(u"print"), (Ranges{{32, 126}}));
  EXPECT_EQ(classOf(u"punct"), (Ranges{{33, 47}, {58, 64}, {91, 96}, {123, 126}}));
  EXPECT_EQ(classOf(u"space"), spaces);
  EXPECT_EQ(classOf(u"upper"), (Ranges{{'A', 'Z'}}));
  EXPECT_EQ(classOf(u"xdigit"), (Ranges{{'0', '9'}, {'A', 'F'}, {'a', 'f'}}));
  EXPECT_EQ(classOf(u"d"), digits);
  EXPECT_EQ(classOf(u"S"), spaces);
  EXPECT_EQ(classOf(u"w"), (Ranges{{'0', '9'}, {'A', 'Z'}, {'_', '_'}, {'a', 'z'}}));
  EXPECT_EQ(classOf(u"word"), Ranges{});
  EXPECT_EQ(classOf(u""), Ranges{});
}

TEST(FindCollatingElement, FindsCharactersByTheirNames) {
  // The first, some inside and the last of each row of the table.
  struct Row {
    std::u16string_view name;
    unsigned code;
  };
  for (const auto& [name, code] : {Row{u"NUL", 0},
                                   Row{u"alert", 7},
                                   Row{u"tab", 9},
                                   Row{u"newline", 10},
                                   Row{u"vertical-tab", 11},
                                   Row{u"form-feed", 12},
                                   Row{u"carriage-return", 13},
                                   Row{u"DC1", 17},
                                   Row{u"ESC", 27},
                                   Row{u"IS1", 31},
                                   Row{u"space", ' '},
                                   Row{u"quotation-mark", '"'},
                                   Row{u"dollar-sign", '$'},
                                   Row{u"apostrophe", '\''},
                                   Row{u"asterisk", '*'},
                                   Row{u"plus-sign", '+'},
                                   Row{u"comma", ','},
                                   Row{u"hyphen", '-'},
                                   Row{u"period", '.'},
                                   Row{u"slash", '/'},
                                   Row{u"zero", '0'},
                                   Row{u"five", '5'},
                                   Row{u"nine", '9'},
                                   Row{u"colon", ':'},
                                   Row{u"less-than-sign", '<'},
                                   Row{u"question-mark", '?'},
                                   Row{u"commercial-at", '@'},
                                   Row{u"left-square-bracket", '['},
                                   Row{u"backslash", '\\'},
                                   Row{u"right-square-bracket", ']'},
                                   Row{u"circumflex", '^'},
                                   Row{u"underscore", '_'},
                                   Row{u"grave-accent", '`'},
                                   Row{u"left-curly-bracket", '{'},
                                   Row{u"vertical-line", '|'},
                                   Row{u"right-curly-bracket", '}'},
                                   Row{u"tilde", '~'},
                                   Row{u"DEL", 127},
                                   Row{u"a", 'a'},
                                   Row{u"Z", 'Z'},
                                   Row{u"\u20AC", 0x20AC}}) {
    const auto character = FindCollatingElement(name);
    ASSERT_TRUE(character);
    EXPECT_EQ(static_cast<unsigned>(*character), code);
  }
  EXPECT_FALSE(FindCollatingElement(u""));
  EXPECT_FALSE(FindCollatingElement(u"Hyphen"));
  EXPECT_FALSE(FindCollatingElement(u"ab"));
}

}  // namespace
}  // namespace Zq::Gantry::Security
