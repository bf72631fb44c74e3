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
  CharacterSet set;
  set.Add(20, 30);
  set.Add(5);
  set.Add(31, 40);
  set.Add(25, 28);
  set.Add(42);
  set.Add(5);
  EXPECT_EQ(RangesOf(set), (Ranges{{5, 5}, {20, 40}, {42, 42}}));
}

TEST(CharacterSet, ComplementsAtBothEnds) {
  CharacterSet set;
  set.Add(5, 9);
  EXPECT_EQ(RangesOf(set.Complement()), (Ranges{{0, 4}, {10, 0xFFFF}}));
  set.Add(0);
  set.Add(0xFFFF);
  EXPECT_EQ(RangesOf(set.Complement()), (Ranges{{1, 4}, {10, 0xFFFE}}));
  EXPECT_EQ(RangesOf(CharacterSet().Complement()), (Ranges{{0, 0xFFFF}}));
  EXPECT_EQ(RangesOf(CharacterSet().Complement().Complement()), Ranges{});
}

TEST(ClassText, WritesHexadecimalRangesAndInvertsASetWithTheLastCharacter) {
  CharacterSet set;
  EXPECT_EQ(ClassText(set), u"[^\\x{0000}-\\x{FFFF}]");
  EXPECT_EQ(ClassText(set.Complement()), u"[\\x{0000}-\\x{FFFF}]");
  set.Add(u'a', u'c');
  set.Add(u'\u20AC');
  EXPECT_EQ(ClassText(set), u"[\\x{0061}-\\x{0063}\\x{20AC}]");
  EXPECT_EQ(ClassText(set.Complement()), u"[^\\x{0061}-\\x{0063}\\x{20AC}]");
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
