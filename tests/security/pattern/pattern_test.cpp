#include "security/pattern/pattern.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "security/pattern/expression_text.h"
#include "security/pattern/pattern_calls.h"

namespace Zq::Gantry::Security {
namespace {

using namespace std::string_literals;
using TestSupport::Matches;
using TestSupport::Repeat;

TEST(Pattern, MatchesTheWholeTextOnly) {
  EXPECT_TRUE(Matches(L"[a-z]+", L"word"));
  EXPECT_FALSE(Matches(L"[a-z]+", L"word "));
  EXPECT_FALSE(Matches(L"[a-z]+", L" word"));
  EXPECT_FALSE(Matches(L"[a-z]+", L"word\n"));
  EXPECT_TRUE(Matches(L"a|ab", L"ab"));
  EXPECT_TRUE(Matches(L"a??", L"a"));
  EXPECT_FALSE(Matches(L"a", L""));
  EXPECT_TRUE(Matches(L"", L""));
  EXPECT_FALSE(Matches(L"", L"a"));
}

TEST(Pattern, MatchesAlternativesAndEmptyOnes) {
  EXPECT_TRUE(Matches(L"(?:x|y)*z?", L"xyyx"));
  EXPECT_TRUE(Matches(L"|a|", L""));
  EXPECT_TRUE(Matches(L"|a|", L"a"));
  EXPECT_TRUE(Matches(L"()", L""));
  EXPECT_TRUE(Matches(L"(?:)", L""));
  EXPECT_FALSE(Matches(L"x(a|b)y", L"xa"));
}

TEST(Pattern, IsCaseSensitive) {
  EXPECT_FALSE(Matches(L"word", L"Word"));
  EXPECT_FALSE(Matches(L"(a)\\1", L"aA"));
  EXPECT_FALSE(Matches(L"[a-z]", L"A"));
}

TEST(Pattern, TreatsANullCharacterAsPartOfTheText) {
  EXPECT_TRUE(Matches(L"a[^b]b", L"a\0b"s));
  EXPECT_FALSE(Matches(L"a", L"a\0b"s));
  EXPECT_TRUE(Matches(L"a\0b"s, L"a\0b"s));
  EXPECT_TRUE(Matches(L"a\\0b", L"a\0b"s));
}

TEST(Pattern, TreatsLoneSurrogatesAsCharacters) {
  EXPECT_TRUE(Matches(L".\xDFFF.", L"\xD800\xDFFF\xD800"));
  EXPECT_FALSE(Matches(L"[\xD800-\xDBFF]", L"\xDC00"));
  EXPECT_TRUE(Matches(L"\\uD800", L"\xD800"));
}

TEST(Pattern, CountsACharacterAbove16BitsAsTwoUnits) {
  EXPECT_TRUE(Matches(L"..", L"\U0001F600"));
  EXPECT_FALSE(Matches(L".", L"\U0001F600"));
  EXPECT_TRUE(Matches(L"\\uD83D\\uDE00", L"\U0001F600"));
  EXPECT_TRUE(Matches(L"\U0001F600", L"\U0001F600"));
}

TEST(PatternQuantifier, MatchesFromLeastToMostTimes) {
  struct Row {
    const wchar_t* expression;
    std::size_t least;
    std::size_t most;
  };
  constexpr std::size_t kNoLimit = 6;
  for (const auto& [expression, least, most] :
       {Row{L"a*", 0, kNoLimit}, Row{L"a+", 1, kNoLimit}, Row{L"a?", 0, 1}, Row{L"a{3}", 3, 3},
        Row{L"a{2,}", 2, kNoLimit}, Row{L"a{2,4}", 2, 4}, Row{L"a{3,3}", 3, 3}, Row{L"a{0}", 0, 0},
        Row{L"a*?", 0, kNoLimit}, Row{L"a+?", 1, kNoLimit}, Row{L"a??", 0, 1}, Row{L"a{3}?", 3, 3},
        Row{L"a{2,}?", 2, kNoLimit}, Row{L"(?:a){2,4}?", 2, 4}}) {
    for (std::size_t count = 0; count <= kNoLimit; ++count) {
      EXPECT_EQ(Matches(expression, std::wstring(count, L'a')), count >= least && count <= most)
          << testing::PrintToString(std::wstring(expression)) << count;
    }
  }
}

TEST(PatternQuantifier, LazyAndGreedyGroupsCaptureDifferently) {
  // The greedy group captures "aa" first, the lazy one "a"; the rest of the expression decides.
  EXPECT_TRUE(Matches(L"(a+)b\\1", L"aabaa"));
  EXPECT_FALSE(Matches(L"(?=(a+?))\\1b", L"aab"));
  EXPECT_TRUE(Matches(L"(?=(a+))\\1b", L"aab"));
}

TEST(Pattern, MatchesOnManyThreadsAtOnce) {
  const auto pattern = Pattern::TryCompile(L"([a-z]+)[0-9]+\\1");
  ASSERT_TRUE(pattern);
  std::vector<int> wrong(8, 0);
  {
    std::vector<std::jthread> threads;
    for (int& count : wrong) {
      threads.emplace_back([&pattern, &count] {
        for (int round = 0; round < 200; ++round) {
          const std::wstring letters(static_cast<std::size_t>(1 + round % 50), L'a');
          if (!pattern->Matches(letters + L"7" + letters)) ++count;
          if (pattern->Matches(letters + L"7" + letters + L"a")) ++count;
        }
      });
    }
  }
  for (const int count : wrong) EXPECT_EQ(count, 0);
}

TEST(CodeUnits, SplitsCharactersAbove16Bits) {
  EXPECT_EQ(CodeUnits(L"a\xFFFF"), u"a\xFFFF");
  EXPECT_EQ(CodeUnits(L"\U00010000\U0010FFFF"), u"\xD800\xDC00\xDBFF\xDFFF");
  EXPECT_EQ(CodeUnits(std::wstring(L"\0\xDC00", 2)), std::u16string(u"\0\xDC00", 2));
}

// Expressions such as real rules contain.

TEST(OrdinaryPattern, ListsOfNumbersMatch) {
  EXPECT_TRUE(Matches(L"\\d+(?:,\\d+){0,499}", L"1,2,3"));
  EXPECT_TRUE(Matches(L"\\d+(?:,\\d+){0,499}", L"1" + Repeat(L",23", 499)));
  EXPECT_FALSE(Matches(L"\\d+(?:,\\d+){0,499}", L"1" + Repeat(L",23", 500)));
}

TEST(OrdinaryPattern, HostNamesMatch) {
  const std::wstring host = L"(?:[a-z0-9](?:[a-z0-9-]{0,61}[a-z0-9])?\\.){1,126}[a-z]{2,63}";
  EXPECT_TRUE(Matches(host, L"www.example.com"));
  EXPECT_FALSE(Matches(host, L"www.-example.com"));
  EXPECT_TRUE(Matches(host, Repeat(L"a.", 126) + L"de"));
  EXPECT_FALSE(Matches(host, Repeat(L"a.", 127) + L"de"));
}

TEST(OrdinaryPattern, ListsOfThousandsOfWordsMatchEachWord) {
  std::vector<std::wstring> words;
  for (int i = 1000; i < 4000; ++i) words.push_back(L"word" + std::to_wstring(i));
  std::wstring list = words.front();
  for (std::size_t i = 1; i < words.size(); ++i) list += L"|" + words[i];
  const auto pattern = Pattern::TryCompile(list);
  ASSERT_TRUE(pattern);
  for (const std::wstring& word : words) EXPECT_TRUE(pattern->Matches(word));
  EXPECT_FALSE(pattern->Matches(L"word4000"));
  EXPECT_FALSE(pattern->Matches(L"word100"));

  list = words.front();
  for (std::size_t i = 1; i < 1000; ++i) list += L"|" + words[i];
  const std::wstring hundredWords = Repeat(L"word1999,", 99) + L"word1999";
  EXPECT_TRUE(Matches(L"(?:" + list + L")(?:,(?:" + list + L"))*", hundredWords));
}

TEST(OrdinaryPattern, CountsOfThousandsAreExact) {
  struct Row {
    const wchar_t* expression;
    std::size_t most;
  };
  for (const auto& [expression, most] :
       {Row{L".{0,10000}", 10'000}, Row{L"[^<>]{0,9000}", 9000}, Row{L"\\w{1,65535}", 65'535},
        Row{L"(?:[a-z]){0,2000}", 2000}}) {
    EXPECT_TRUE(Matches(expression, L"abc"));
    EXPECT_TRUE(Matches(expression, std::wstring(most, L'a')));
    EXPECT_FALSE(Matches(expression, std::wstring(most + 1, L'a')));
  }
  EXPECT_TRUE(Matches(L"[^<>]{0,9000}", std::wstring(6000, L'a')));
}

TEST(OrdinaryPattern, ReferencesCompareAMillionCharacters) {
  const std::wstring letters(500'000, L'a');
  EXPECT_TRUE(Matches(L"(['\"])[^'\"]*\\1", L"'" + letters + L"'"));
  EXPECT_FALSE(Matches(L"(['\"])[^'\"]*\\1", L"'" + letters + L"\""));
  EXPECT_TRUE(Matches(L"(.*)\\1", letters + letters));
}

TEST(OrdinaryPattern, LongTextsMatch) {
  EXPECT_TRUE(Matches(L"[a-z]+", std::wstring(5'000'000, L'a')));
  EXPECT_FALSE(Matches(L"[a-z]+", std::wstring(5'000'000, L'a') + L"1"));
  EXPECT_TRUE(Matches(L"(?:(?!--).)*", std::wstring(100'000, L'a')));
  EXPECT_TRUE(Matches(L"(?=.*\\d)(?=.*[a-z])[\\w ]{8,}", std::wstring(100'000, L'a') + L"1"));
  EXPECT_TRUE(Matches(L"(a|b)*", std::wstring(100'000, L'a')));
  EXPECT_TRUE(Matches(L"\\w+(?:,\\w+)*", L"abc" + Repeat(L",abc", 50'000)));
}

}  // namespace
}  // namespace Zq::Gantry::Security
