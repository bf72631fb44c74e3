#include "security/pattern/translation.h"

#include <gtest/gtest.h>

#include <string>

#include "security/pattern/expression_text.h"

namespace Zq::Gantry::Security {
namespace {

using TestSupport::Repeat;

/// The translation, with the letter "a" instead of its hexadecimal form for readability.
std::u16string Translated(std::u16string_view expression) {
  std::u16string text =
      TranslateExpression(expression).value_or(Translation{u"invalid"}).expression;
  constexpr std::u16string_view kLetter = u"\\x{0061}";
  for (std::size_t at = 0; (at = text.find(kLetter, at)) != text.npos; ++at) {
    text.replace(at, kLetter.size(), u"a");
  }
  return text;
}

TEST(TranslateExpression, KeepsGroupsAlternativesAndAssertions) {
  EXPECT_EQ(Translated(u"^(a|(?:a))(?=a)(?!a)\\b\\B$"), u"\\A(a|(?:a))(?=a)(?!a)\\b\\B\\z");
}

TEST(TranslateExpression, WritesEveryQuantifierAsACount) {
  EXPECT_EQ(Translated(u"a?a??a{3}a{2,4}?a{1}"), u"a{0,1}a{0,1}?a{3,3}a{2,4}?a");
}

TEST(TranslateExpression, WatchesBothEndsOfALongRepetition) {
  EXPECT_EQ(Translated(u"a*"), u"(?C0)a{0,}(?C0)");
  EXPECT_EQ(Translated(u"a+?"), u"(?C0)a{1,}?(?C0)");
  EXPECT_EQ(Translated(u"a{0,64}"), u"a{0,64}");
  EXPECT_EQ(Translated(u"a{0,65}"), u"(?C0)a{0,65}(?C0)");
  EXPECT_EQ(Translated(u"a{64,}"), u"(?C0)a{64,}(?C0)");
  EXPECT_EQ(Translated(u"a{65,}"), u"(?C1)a{65,}(?C0)");
}

TEST(TranslateExpression, WatchesALongRowOfItems) {
  EXPECT_EQ(Translated(Repeat(u"a", 64)), Repeat(u"a", 64));
  EXPECT_EQ(Translated(Repeat(u"a", 66)), Repeat(u"a", 65) + u"(?C0)a");
  EXPECT_EQ(Translated(u"a{40}a{0,25}a"), u"a{40,40}a{0,25}(?C0)a");
  // The count starts again after a watch point.
  EXPECT_EQ(Translated(Repeat(u"a", 64) + u"a*" + Repeat(u"a", 64)),
            Repeat(u"a", 64) + u"(?C0)a{0,}(?C0)" + Repeat(u"a", 64));
  // Optional items count too.
  EXPECT_EQ(Translated(Repeat(u"a{0}", 66)), Repeat(u"a{0,0}", 65) + u"(?C0)a{0,0}");
}

TEST(TranslateExpression, WatchesEachRoundOfARepeatedGroup) {
  EXPECT_EQ(Translated(u"(a|a)*"), u"(a|a(?C0)){0,}");
  EXPECT_EQ(Translated(u"(?:a){2}(a)"), u"(?:a(?C0)){2,2}(a)");
}

TEST(TranslateExpression, WatchesGroupsOfManyAlternatives) {
  EXPECT_EQ(Translated(u"(?:a|" + Repeat(u"|", 30) + u")"), u"(?:a|" + Repeat(u"|", 30) + u")");
  EXPECT_EQ(Translated(u"a(?:a|" + Repeat(u"|", 31) + u")"),
            u"a(?:(?C2)a|" + Repeat(u"|", 31) + u")");
  EXPECT_EQ(Translated(u"(?=(" + Repeat(u"|", 32) + u"))"),
            u"(?=((?C2)" + Repeat(u"|", 32) + u"))");
  EXPECT_EQ(Translated(Repeat(u"|", 32)), u"(?C2)" + Repeat(u"|", 32));
}

TEST(TranslateExpression, WatchesReferencesByTheirGroup) {
  EXPECT_EQ(Translated(u"(a)\\1"), u"(a)(?C4)\\g{1}(?C0)");
  EXPECT_EQ(Translated(u"(a)(a)\\2"), u"(a)(a)(?C5)\\g{2}(?C0)");
  EXPECT_EQ(Translated(u"(a)\\1?"), u"(a)(?C3)\\g{1}{0,1}(?C0)");
}

TEST(TranslateExpression, WritesEachClassAsRangesInHexadecimal) {
  EXPECT_EQ(Translated(u"[z-zb-da-a]"), u"[a-\\x{0064}\\x{007A}]");
  EXPECT_EQ(Translated(u"[^\\n]"), u"[^\\x{000A}]");
  EXPECT_EQ(Translated(u"."), u"[^\\x{000A}\\x{000D}\\x{2028}-\\x{2029}]");
  EXPECT_EQ(Translated(u"\\d\\D"), u"[\\x{0030}-\\x{0039}][^\\x{0030}-\\x{0039}]");
  EXPECT_EQ(Translated(u"[\\s\\S]"), u"[\\x{0000}-\\x{FFFF}]");
  EXPECT_EQ(Translated(u"[\\D5]"), u"[^\\x{0030}-\\x{0034}\\x{0036}-\\x{0039}]");
  EXPECT_EQ(Translated(u"[[=a=][:digit:]-]"), u"[\\x{002D}\\x{0030}-\\x{0039}\\x{0041}a]");
  EXPECT_EQ(Translated(u"[]"), u"[^\\x{0000}-\\x{FFFF}]");
  EXPECT_EQ(Translated(u"\\.\\u20AC*"), u"[\\x{002E}](?C0)[\\x{20AC}]{0,}(?C0)");
}

TEST(TranslateExpression, WritesNumbersOfSeveralDigits) {
  EXPECT_EQ(Translated(u"a{10,65535}"), u"(?C0)a{10,65535}(?C0)");
  EXPECT_EQ(Translated(Repeat(u"(a)", 12) + u"\\12"), Repeat(u"(a)", 12) + u"(?C15)\\g{12}(?C0)");
}

TEST(TranslateExpression, CountsThePropertiesThatMakeAMatchSlow) {
  const auto translation = TranslateExpression(
      u"(a)(?:a)((a)|a|a)a{7}a{100,200}(\\1){30}[\\u0100\\u0102\\u0104][^a-c]\\1{300}");
  ASSERT_TRUE(translation);
  EXPECT_EQ(translation->groups, 4U);
  EXPECT_EQ(translation->longestFixedRun, 300U);
  EXPECT_EQ(translation->mostAlternatives, 3U);
  EXPECT_EQ(translation->mostWideRanges, 3U);
  EXPECT_EQ(TranslateExpression(u"a{7}")->longestFixedRun, 0U);
  EXPECT_EQ(TranslateExpression(u"a{100,200}")->longestFixedRun, 100U);
  EXPECT_EQ(TranslateExpression(u"(a)\\1{0,200}")->longestFixedRun, 0U);
  EXPECT_EQ(TranslateExpression(u"[^a]")->mostWideRanges, 1U);
  EXPECT_EQ(TranslateExpression(u"[\\x80-\\u0100]")->mostWideRanges, 1U);
  EXPECT_EQ(TranslateExpression(u"[\\x80-\\xFF]")->mostWideRanges, 0U);
}

}  // namespace
}  // namespace Zq::Gantry::Security
