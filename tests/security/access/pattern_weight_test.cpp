#include "security/access/pattern_weight.h"

#include <gtest/gtest.h>

#include <string>

namespace Zq::Gantry::Security {
namespace {

std::size_t StatesOf(std::wstring_view pattern) { return WeighPattern(pattern).states; }

TEST(PatternWeight, GrowsWithThePattern) {
  EXPECT_EQ(StatesOf(L""), 2U);
  EXPECT_EQ(StatesOf(L"a"), 3U);
  EXPECT_EQ(StatesOf(L"abc"), 5U);
  EXPECT_EQ(StatesOf(L"a|b"), 6U);
  EXPECT_EQ(StatesOf(L"(a)"), 6U);
  EXPECT_EQ(StatesOf(L"\\d"), 3U);
  EXPECT_EQ(StatesOf(L"[a-z]"), 3U);
}

TEST(PatternWeight, OfALoopIsLittleMoreThanItsContent) {
  EXPECT_EQ(StatesOf(L"a*"), 5U);
  EXPECT_EQ(StatesOf(L"(a+)?"), 10U);
  EXPECT_LT(StatesOf(L"((((((((((a*)*)*)*)*)*)*)*)*)*)*"), 100U);
}

TEST(PatternWeight, MultipliesRepetitionsOut) {
  // 2 at the top, and (the atom and a state beside it) times (copies and original), and 2.
  EXPECT_EQ(StatesOf(L"\\d{100}"), 2U + 2 * 101 + 2);
  EXPECT_EQ(StatesOf(L"\\d{3,100}"), 2U + 2 * 101 + 2);
  EXPECT_EQ(StatesOf(L"\\d{100,}"), 2U + 2 * 101 + 2);
  EXPECT_GT(StatesOf(L"(?:(?:a{100}){100}){100}"), 1'000'000U);
  EXPECT_GT(StatesOf(L"a{100}{100}{100}"), 1'000'000U);
}

TEST(PatternWeight, OfAnAbsurdCountIsLargeAndDoesNotWrap) {
  EXPECT_GE(StatesOf(L"a{1000000}"), 1'000'000U);
  EXPECT_EQ(StatesOf(L"a{99999999999999999999999999}"), 1'000'000'000U);
  EXPECT_EQ(StatesOf(L"(((a{4294967295}){4294967295}){4294967295})"), 1'000'000'000U);
}

std::size_t ChainOf(std::wstring_view pattern) { return WeighPattern(pattern).chain; }

TEST(PatternWeight, AChainIsOfTheLongestAlternativeOnly) {
  EXPECT_EQ(ChainOf(L"abc"), 2U + 3);
  EXPECT_EQ(ChainOf(L"ab|cde|f"), 2U + 2 * 2 + 3);
  EXPECT_EQ(StatesOf(L"ab|cde|f"), 2U + 2 * 2 + 6);
  EXPECT_EQ(ChainOf(L"x(a|bc)y"), 2U + 1 + (2 + 2 + 2 + 1) + 1);
}

TEST(PatternWeight, AChainHasARepeatedCharacterOnce) {
  for (const wchar_t* pattern : {L"a{2000}", L"[a-z]{0,2000}", L"\\d{2000,}", L".{1,2000}"}) {
    EXPECT_EQ(ChainOf(pattern), 2U + 1 + 3);
  }
  EXPECT_EQ(ChainOf(L"(a{100}){3}"), 2U + (7 + 1) * 4 + 2);
}

TEST(PatternWeight, AChainHasAllCopiesOfWhatMayMatchWithoutACharacter) {
  for (const wchar_t* pattern : {L"(?:){2000}", L"(?:a?){2000}", L"(a)\\1{2000}", L"\\b{2000}",
                                 L"a{0,9}{2000}", L"a?{2000}"}) {
    EXPECT_GT(ChainOf(pattern), 2000U);
  }
}

TEST(PatternWeight, KnowsTheLargestLoop) {
  EXPECT_EQ(WeighPattern(L"abc?").loop, 0U);
  EXPECT_EQ(WeighPattern(L"a*").loop, 3U);
  EXPECT_EQ(WeighPattern(L"a*(abc)+b*").loop, 2U + 3 + 1 + 2);
  EXPECT_EQ(WeighPattern(L"(abc){2,}").loop, 2U + 3 + 1);
  EXPECT_EQ(WeighPattern(L"a{2,}").loop, 0U);
}

TEST(PatternWeight, CountsLooksAhead) { EXPECT_EQ(WeighPattern(L"(?=a)(?!b)(?:c)(d)").looks, 2U); }

TEST(PatternWeight, CountsGroupsAndTheirNesting) {
  const PatternWeight weight = WeighPattern(L"(a(?:b)(?=c))(?!d)");
  EXPECT_EQ(weight.groups, 4U);
  EXPECT_EQ(weight.nesting, 2U);
  EXPECT_EQ(WeighPattern(std::wstring(500, L'(')).nesting, 500U);
  EXPECT_EQ(WeighPattern(std::wstring(10'000'000, L'(')).nesting, 1000U) << "as far as it is read";
}

TEST(PatternWeight, AnEscapedOrListedParenthesisIsNoGroup) {
  EXPECT_EQ(WeighPattern(L"\\(\\(").groups, 0U);
  EXPECT_EQ(WeighPattern(L"[(][\\](][[:alpha:](][[.].](][\\c](]").groups, 0U);
  EXPECT_EQ(WeighPattern(L"[a](").groups, 1U);
}

TEST(PatternWeight, AControlCharacterTakesWhateverStandsBehindIt) {
  EXPECT_EQ(WeighPattern(L"\\c[((a").groups, 2U);
  EXPECT_EQ(WeighPattern(L"\\c\\(a").groups, 1U);
  EXPECT_EQ(WeighPattern(L"\\c((a").groups, 1U);
  EXPECT_EQ(ChainOf(L"\\cJ{2000}"), 2U + 1 + 3);
}

TEST(PatternWeight, AReferenceHasAllItsDigitsBeforeItIsRepeated) {
  EXPECT_GT(ChainOf(L"\\12{2000}"), 2000U);
  EXPECT_GT(ChainOf(L"\\1234{0,2000}"), 2000U);
  EXPECT_GT(ChainOf(L"\\1\xff12{2000}"), 2000U) << "a digit for the C library of some systems";
  EXPECT_EQ(ChainOf(L"\\x42{2000}"), 2U + 3 + 3) << "a character's";
}

TEST(PatternWeight, ACountMayHaveDigitsBeyondAscii) {
  EXPECT_GT(StatesOf(L"(){200\xff11\xff11}"), 19'900U);
  EXPECT_GT(StatesOf(L"a{\x0661\x0661\x0661\x0661}"), 2000U);
  EXPECT_EQ(StatesOf(L"\\d{3,100}"), StatesOf(L"\\d{100}"));
}

TEST(PatternWeight, OfAClassGrowsWithItsParts) {
  const auto classOf = [](const std::wstring& part, std::size_t times) {
    std::wstring text = L"[";
    while (times-- > 0) text += part;
    return text + L"]";
  };
  EXPECT_EQ(StatesOf(classOf(L"a", 63)), 2U + 1);
  EXPECT_EQ(StatesOf(classOf(L"a", 64)), 2U + 1 + 1);
  EXPECT_EQ(StatesOf(classOf(L"\\n", 640)), 2U + 1 + 10);
  EXPECT_EQ(StatesOf(classOf(L"\\W", 32)), 2U + 1 + 10);
  EXPECT_EQ(StatesOf(classOf(L"[:alpha:]", 32)), 2U + 1 + 10);
  EXPECT_EQ(StatesOf(L"[\\w\\s\\d.-]"), 2U + 1);
  EXPECT_EQ(ChainOf(classOf(L"a", 640)), 2U + 1);
}

TEST(PatternWeight, RepeatsTheWholeGroup) {
  EXPECT_GT(StatesOf(L"(abcdefghij){100}"), 1000U);
  EXPECT_GT(StatesOf(L"([)]abcdefghij){100}"), 1000U);
  EXPECT_GT(StatesOf(L"(\\)abcdefghij){100}"), 1000U);
}

TEST(PatternWeight, OfWhatDoesNotCompileIsSomething) {
  for (const wchar_t* pattern :
       {L")", L"))((", L"[", L"[[", L"[[:", L"[\\", L"{", L"{1", L"a{,}", L"*", L"(?", L"\\"}) {
    EXPECT_GE(StatesOf(pattern), 2U);
  }
}

}  // namespace
}  // namespace Zq::Gantry::Security
