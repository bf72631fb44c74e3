#include "security/access/pattern_match.h"

#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <vector>

#include "security/access/match_patience.h"

namespace Zq::Gantry::Security {
namespace {

using namespace std::string_literals;

TEST(PatternMatch, TakesTheWholeValueNotAPart) {
  EXPECT_TRUE(MatchesPattern(L"[a-z]+", L"word"));
  EXPECT_FALSE(MatchesPattern(L"[a-z]+", L"word "));
  EXPECT_FALSE(MatchesPattern(L"[a-z]+", L" word"));
  EXPECT_TRUE(MatchesPattern(L"a|ab", L"ab"));
  EXPECT_FALSE(MatchesPattern(L"a", L""));
  EXPECT_TRUE(MatchesPattern(L"", L""));
}

TEST(PatternMatch, KnowsTheDefaultGrammar) {
  EXPECT_TRUE(MatchesPattern(L"^\\d{2,4}$", L"123"));
  EXPECT_TRUE(MatchesPattern(L"(?:x|y)*z?", L"xyyx"));
  EXPECT_TRUE(MatchesPattern(L"(?=.*\\d)(?!.*!)[\\w!]+", L"abc1"));
  EXPECT_FALSE(MatchesPattern(L"(?=.*\\d)(?!.*!)[\\w!]+", L"abc1!"));
  EXPECT_TRUE(MatchesPattern(L"[[:alpha:]]+-\\x41\\u0042", L"word-AB"));
  EXPECT_TRUE(MatchesPattern(L"\\bword\\b.*?", L"word end"));
}

TEST(PatternMatch, KnowsBackReferences) {
  EXPECT_TRUE(MatchesPattern(L"(\\w+)-\\1", L"ab-ab"));
  EXPECT_FALSE(MatchesPattern(L"(\\w+)-\\1", L"ab-ac"));
}

TEST(PatternMatch, IsCaseSensitive) {
  EXPECT_FALSE(MatchesPattern(L"word", L"Word"));
  EXPECT_FALSE(MatchesPattern(L"(a)\\1", L"aA"));
  EXPECT_FALSE(MatchesPattern(L"(a)\\1", L"AA"));
}

TEST(PatternMatch, APatternThatDoesNotCompileMatchesNothing) {
  for (const wchar_t* pattern :
       {L"(", L")", L"[", L"[z-a]", L"*", L"a{2,1}", L"\\1", L"[[:no:]]", L"(?<a>b)"}) {
    EXPECT_FALSE(MatchesPattern(pattern, L"")) << testing::PrintToString(std::wstring(pattern));
    EXPECT_FALSE(MatchesPattern(pattern, L"a"));
  }
}

TEST(PatternMatch, ANullCharacterIsOneOfTheValue) {
  EXPECT_TRUE(MatchesPattern(L"a[^b]b", L"a\0b"s));
  EXPECT_FALSE(MatchesPattern(L"a", L"a\0b"s));
}

TEST(PatternMatch, LoneSurrogatesAreOrdinaryCharacters) {
  EXPECT_TRUE(MatchesPattern(L".\xDFFF.", L"\xD800\xDFFF\xD800"));
  EXPECT_FALSE(MatchesPattern(L"[\xD800-\xDBFF]", L"\xDC00"));
}

TEST(PatternLimit, OfStatesIsWhereItIs) {
  EXPECT_TRUE(MatchesPattern(L"[a-z]{0,9997}", L"word"));
  EXPECT_FALSE(MatchesPattern(L"[a-z]{0,9998}", L"word"));
}

TEST(PatternLimit, OfAChainIsWhereItIs) {
  const std::wstring longest(kLongestPatternChain - 2, L'a');
  EXPECT_TRUE(MatchesPattern(longest, longest));
  EXPECT_FALSE(MatchesPattern(longest + L"a", longest + L"a"));
}

TEST(PatternLimit, OfNestingIsWhereItIs) {
  const std::wstring open(kDeepestPatternNesting, L'(');
  const std::wstring close(kDeepestPatternNesting, L')');
  EXPECT_TRUE(MatchesPattern(open + L"a" + close, L"a"));
  EXPECT_FALSE(MatchesPattern(L"(" + open + L"a" + close + L")", L"a"));
}

TEST(PatternLimit, AbsurdRepetitionsAreNotMade) {
  EXPECT_FALSE(MatchesPattern(L"a{1000000}", std::wstring(1'000'000, L'a')));
  EXPECT_FALSE(MatchesPattern(L"(?:(?:(?:){1000}){1000}){1000}", L""));
  EXPECT_FALSE(MatchesPattern(std::wstring(10'000'000, L'('), L"a"));
  EXPECT_TRUE(MatchesPattern(L"a{1,1000}", std::wstring(1000, L'a')));
}

std::wstring Repeat(const std::wstring& part, std::size_t times) {
  std::wstring text;
  while (times-- > 0) text += part;
  return text;
}

// No limit is met by what a rule has reason to be.

TEST(OrdinaryPattern, MayCountToSomeThousandCharacters) {
  EXPECT_TRUE(MatchesPattern(L"[^<>]{0,2048}", std::wstring(2048, L'a')));
  EXPECT_FALSE(MatchesPattern(L"[^<>]{0,2048}", std::wstring(2049, L'a')));
  EXPECT_TRUE(MatchesPattern(L"^.{1,4096}$", std::wstring(4096, L'a')));
  EXPECT_FALSE(MatchesPattern(L"^.{1,4096}$", std::wstring(4097, L'a')));
}

TEST(OrdinaryPattern, MayListSomeHundredWords) {
  std::wstring words = L"first";
  for (int i = 100; i < 600; ++i) words += L"|word" + std::to_wstring(i);
  EXPECT_TRUE(MatchesPattern(words, L"first"));
  EXPECT_TRUE(MatchesPattern(words, L"word599"));
  EXPECT_FALSE(MatchesPattern(words, L"word600"));
}

TEST(OrdinaryPattern, MayReferBackOverSomeHundredCharacters) {
  const std::wstring quoted = L"'" + std::wstring(200, L'a') + L"'";
  EXPECT_TRUE(MatchesPattern(L"(['\"]).{1,200}\\1", quoted));
  EXPECT_FALSE(MatchesPattern(L"(['\"]).{1,199}\\1", quoted));
  EXPECT_TRUE(MatchesPattern(L"(['\"])[^'\"]*\\1", L"'" + std::wstring(600, L'a') + L"'"));
}

TEST(OrdinaryPattern, MayLookAheadOverAThousandCharacters) {
  const std::wstring letters(1000, L'a');
  EXPECT_TRUE(MatchesPattern(L"(?=.*\\d)(?=.*[a-z])[\\w ]{8,2000}", letters + L"1"));
  EXPECT_FALSE(MatchesPattern(L"(?=.*\\d)(?=.*[a-z])[\\w ]{8,2000}", letters));
  EXPECT_TRUE(MatchesPattern(L"(?:(?!--).)*", letters));
}

TEST(OrdinaryPattern, OfThreeHundredCharactersBearsTwoThousand) {
  const std::wstring pattern = Repeat(L"([a-z0-9]+[-.]?)", 19);
  ASSERT_GT(pattern.size(), 300U);
  EXPECT_TRUE(MatchesPattern(pattern, Repeat(L"abc7", 500)));
  EXPECT_FALSE(MatchesPattern(pattern, Repeat(L"abc7", 500) + L"!"));
}

/// All texts of up to `length` characters of "ab1 ".
std::vector<std::wstring> AllTexts(std::size_t length) {
  std::vector<std::wstring> texts{L""};
  for (std::size_t first = 0; length > 0; --length) {
    const std::size_t end = texts.size();
    for (; first < end; ++first) {
      for (const wchar_t c : {L'a', L'b', L'1', L' '}) texts.push_back(texts[first] + c);
    }
  }
  return texts;
}

TEST(PatternOracle, AnswersLikeTheDefaultMatcher) {
  const std::vector<std::wstring> texts = AllTexts(4);
  for (const wchar_t* pattern : {L"(a+)+b",
                                 L"(a*)*",
                                 L"a?a?aa",
                                 L"(a|ab)(b|1)*",
                                 L"(?:a|b){2,3}",
                                 L"[^a]*a.*",
                                 L"\\w+\\b.*",
                                 L"\\B.*",
                                 L"(?=.*1)[ab1]+",
                                 L"(?!.*b)[\\w ]*",
                                 L"a*?b+?",
                                 L"^a.*$|b",
                                 L"(a|(b|(1)))+",
                                 L"()*a",
                                 L"(?:(?=a)a|b)*",
                                 L"(a{0,2}){2}",
                                 L"[[:digit:]a-b]{2,}",
                                 L"\\d\\s?\\D*",
                                 L"|a|",
                                 L"(?:a*)*b"}) {
    const std::wregex expression(pattern);
    for (const std::wstring& text : texts) {
      EXPECT_EQ(MatchesPattern(pattern, text), std::regex_match(text, expression))
          << testing::PrintToString(std::wstring(pattern)) << testing::PrintToString(text);
    }
  }
}

TEST(PatternOracle, AnswersLikeTheDefaultMatcherForLinesAndNamedParts) {
  for (const wchar_t* pattern : {L".",
                                 L".*",
                                 L"^.$",
                                 L"a.^b",
                                 L"a$.b",
                                 L"[^a]",
                                 L"\\s",
                                 L"\\S+",
                                 L"[[.a.]]b?",
                                 L"[[=a=]]+",
                                 L"[[.hyphen.]]",
                                 L"[[.-.]-a]+",
                                 L"[^[:space:]]*",
                                 L"[\\s\\S]*",
                                 L"[]",
                                 L"[^]*",
                                 L"\\0",
                                 L"\\cJ",
                                 L"\\W+",
                                 L"[\\d-]*",
                                 L"(?:a|^b|c$)+"}) {
    for (const wchar_t* text :
         {L"", L"a", L"ab", L"\n", L"\r", L"\x2028", L"\x2029", L"\x85", L"a\nb", L"a\r\nb",
          L"a\x2028"
          L"b",
          L"-", L"-a", L"\xe4", L"A", L"ac", L"bc"}) {
      bool expected = false;
      try {
        expected = std::regex_match(text, std::wregex(pattern));
      } catch (const std::regex_error&) {
      }
      EXPECT_EQ(MatchesPattern(pattern, text), expected)
          << testing::PrintToString(std::wstring(pattern))
          << testing::PrintToString(std::wstring(text));
    }
  }
}

TEST(MatchPatience, EndsWithAnError) {
  MatchPatience patience(/*total=*/10, /*lookPrice=*/4, /*movePrice=*/1);
  const wchar_t text[] = L"ab";
  PatientPosition place(text, patience);
  EXPECT_EQ(*place, L'a');
  ++place;
  EXPECT_EQ(*place, L'b');
  --place;
  EXPECT_THROW(*place, std::regex_error);
}

TEST(MatchPatience, EndsAtComparisonsToo) {
  MatchPatience patience(/*total=*/2, /*lookPrice=*/4, /*movePrice=*/1);
  const wchar_t text[] = L"ab";
  const PatientPosition place(text, patience);
  EXPECT_TRUE(place == place);
  EXPECT_FALSE(place != place);
  EXPECT_THROW(static_cast<void>(place == place), std::regex_error);
}

TEST(PatternHostile, AMillionLettersAgainstNestedRepetition) {
  EXPECT_FALSE(MatchesPattern(L"(a+)+b", std::wstring(1'000'000, L'a')));
}

TEST(PatternHostile, AMillionBackslashes) {
  EXPECT_TRUE(MatchesPattern(L"\\\\*", std::wstring(1'000'000, L'\\')));
  EXPECT_FALSE(MatchesPattern(L"[^x]*x", std::wstring(1'000'000, L'\\')));
}

}  // namespace
}  // namespace Zq::Gantry::Security
