#include <gtest/gtest.h>

#include <string>

#include "text/html_text.h"

using WattleafHost::HtmlText;

namespace {

const std::string kReplaced = "\xEF\xBF\xBD";
const std::string kDots = "\xE2\x80\xA6";

}  // namespace

TEST(HostHtmlText, WritesCharactersOfMarkupAsReferences) {
  EXPECT_EQ(HtmlText("<a href=\"x\" id='y'>&amp;", 60),
            "&lt;a href=&quot;x&quot; id=&#39;y&#39;&gt;&amp;amp;");
}

TEST(HostHtmlText, ReplacesInvalidBytes) {
  EXPECT_EQ(HtmlText("a\xFF"
                     "b",
                     60),
            "a" + kReplaced + "b");
}

TEST(HostHtmlText, ReplacesControlCharacters) {
  using namespace std::string_literals;
  EXPECT_EQ(HtmlText("a\0b\nc\x1F"
                     "d\x7F"s,
                     60),
            "a" + kReplaced + "b" + kReplaced + "c" + kReplaced + "d" + kReplaced);
  EXPECT_EQ(HtmlText("\xC2\x80\xC2\x9F\xC2\xA0", 60), kReplaced + kReplaced + "\xC2\xA0");
}

TEST(HostHtmlText, ReplacesEachInvisibleCharacterThatReordersOrHidesText) {
  const std::vector<std::string> unsafe = {
      "\xD8\x9C",          // U+061C
      "\xE1\xA0\x8E",      // U+180E
      "\xE2\x80\x8B",      // U+200B
      "\xE2\x80\x8E",      // U+200E
      "\xE2\x80\x8F",      // U+200F
      "\xE2\x80\xA8",      // U+2028
      "\xE2\x80\xAE",      // U+202E
      "\xE2\x81\xA0",      // U+2060
      "\xE2\x81\xA6",      // U+2066
      "\xE2\x81\xAF",      // U+206F
      "\xEF\xB8\x8F",      // U+FE0F
      "\xEF\xBB\xBF",      // U+FEFF
      "\xEF\xBF\xB9",      // U+FFF9
      "\xEF\xBF\xBE",      // U+FFFE
      "\xF3\xA0\x80\xA0",  // U+E0020
  };
  for (const std::string& character : unsafe) {
    EXPECT_EQ(HtmlText("a" + character + "b", 60), "a" + kReplaced + "b")
        << testing::PrintToString(character);
  }
}

TEST(HostHtmlText, KeepsLettersOfAllScriptsAndJoiners) {
  const std::string text =
      "\xC3\xA4\xD7\x90\xE0\xA4\x95\xE2\x80\x8D\xE2\x80\x8C\xE6\x97\xA5\xF0\x9F\x94\x8B";
  EXPECT_EQ(HtmlText(text, 60), text);
}

TEST(HostHtmlText, KeepsTheNeighboursOfUnsafeCharacters) {
  const std::string text =
      "\x20\x7E\xC2\xA0\xE2\x80\xA7\xE2\x80\xAF\xE2\x81\x9F\xE2\x81\xB0\xEF\xBF\xBC\xEF\xB8\x90";
  EXPECT_EQ(HtmlText(text, 60), text);
}

TEST(HostHtmlText, EndsALongTextWithDots) {
  EXPECT_EQ(HtmlText("abcd", 4), "abcd");
  EXPECT_EQ(HtmlText("abcde", 4), "abc" + kDots);
  // Counted are characters, not bytes or references.
  EXPECT_EQ(HtmlText("\xC3\xA4\xC3\xA4\xC3\xA4", 3), "\xC3\xA4\xC3\xA4\xC3\xA4");
  EXPECT_EQ(HtmlText("&&&&", 3), "&amp;&amp;" + kDots);
  EXPECT_EQ(HtmlText("\xF0\x9F\x94\x8B\xF0\x9F\x94\x8B\xF0\x9F\x94\x8B", 2),
            "\xF0\x9F\x94\x8B" + kDots);
}

TEST(HostHtmlText, ShortensTenThousandCharacters) {
  EXPECT_EQ(HtmlText(std::string(10000, 'x'), 60), std::string(59, 'x') + kDots);
}
