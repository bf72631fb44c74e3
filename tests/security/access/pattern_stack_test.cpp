#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "security/access/path_guard.h"
#include "security/access/pattern_match.h"
#include "security/access/pattern_weight.h"
#include "support/small_stack.h"

namespace Zq::Gantry::Security {
namespace {

using TestSupport::FinishesOnASmallStack;

std::wstring Repeat(const std::wstring& part, std::size_t times) {
  std::wstring text;
  while (times-- > 0) text += part;
  return text;
}

/// `part` as many times as the limit of chains allows, with `tail` behind it.
std::wstring Largest(const std::wstring& part, const std::wstring& tail = L"") {
  std::size_t times = 1;
  while (WeighPattern(Repeat(part, times + 1) + tail).chain <= kLongestPatternChain) ++times;
  return Repeat(part, times) + tail;
}

struct Sample {
  const char* label;
  std::wstring pattern;
};

std::vector<Sample> LargestPatterns() {
  const std::size_t deep = kDeepestPatternNesting;
  return {
      {"letters", Largest(L"a")},
      {"choices", Largest(L"a|", L"a")},
      {"empty groups", Largest(L"()")},
      {"optional groups", Largest(L"(a?)")},
      {"optional letters", Largest(L"a?")},
      {"loops", Largest(L"a*")},
      {"lazy loops", Largest(L"a*?")},
      {"groups that are loops", Largest(L"(?:a*)*")},
      {"looks ahead", Largest(L"(?=a*)")},
      {"looping choices", L"(?:" + Repeat(L"a|", 1200) + L"a)*"},
      {"looping optional choices", L"(?:" + Repeat(L"a?|", 1200) + L"a)*"},
      {"looping groups", L"(?:" + Repeat(L"(a)|", 300) + L"a)*"},
      {"counted", L"a{0,9997}"},
      {"counted and counted again", L"(?:a{0,90}){100}"},
      {"counted, looked ahead at", Repeat(L"(?=.*b|a)", 100) + L".{0,9000}"},
      {"long words", Repeat(std::wstring(1200, L'a') + L"|", 15) + L"a"},
      {"counted empty groups", L"(?:){300}"},
      {"nested", Repeat(L"(", deep) + L"a" + Repeat(L")", deep)},
      {"nested loops", Repeat(L"(", deep) + L"a" + Repeat(L")*", deep)},
      {"nested looks ahead", Repeat(L"(?=", deep) + L"a" + Repeat(L")", deep) + L"a*"},
      {"nested refusals", Repeat(L"(?!", deep) + L"a" + Repeat(L")", deep) + L"a*"},
      {"loops of looks ahead", L"(?:(?=a*$)a)*"},
      {"classes", Largest(L"[a-z]")},
      {"a class of many names", L"[^b" + Repeat(L"\\W", 63'000) + L"]*"},
      {"a class of many ranges", L"[^" + Repeat(L"c-d", 400'000) + L"]*"},
  };
}

using Clock = std::chrono::steady_clock;

double SecondsOf(const std::wstring& pattern, const std::wstring& value) {
  const auto begin = Clock::now();
  EXPECT_TRUE(FinishesOnASmallStack([&] { MatchesPattern(pattern, value); }));
  return std::chrono::duration<double>(Clock::now() - begin).count();
}

// "Minutes" would be a service that hangs; the measured times are below three seconds.
constexpr double kLongestSeconds = 20;

TEST(PatternStack, TheLargestPatternsFitAgainstALongValue) {
  const std::wstring value(1'000'000, L'a');
  for (const auto& [label, pattern] : LargestPatterns()) {
    SCOPED_TRACE(label);
    ASSERT_LE(WeighPattern(pattern).states, kMostPatternStates);
    ASSERT_LE(WeighPattern(pattern).chain, kLongestPatternChain);
    EXPECT_LT(SecondsOf(pattern, value), kLongestSeconds);
  }
}

/// Patterns that only the matcher with back-tracking takes, and that make it go back a lot.
std::vector<Sample> ReferringPatterns() {
  return {
      {"loop", L"(a*)\\1b"},
      {"two loops", L"(a+)+\\1b"},
      {"three loops", L"((a*)*)*\\1b"},
      {"eight loops", L"((((((((a*)*)*)*)*)*)*)*)*\\1b"},
      {"choices", L"(?:(a)|(a)|(a)|(a)|(a))*\\1b"},
      {"looks ahead", L"(?:(?=a*b)a|(?!a*b)a|(a))*\\1b"},
      {"counted", L"(a).{0,9000}\\1b"},
      {"counted in a loop", L"(a)(?:.{0,100})*\\1b"},
      {"a chain and a loop", std::wstring(500, L'a') + L"a*(a)\\1b"},
      {"a chain of groups and a loop", Repeat(L"()", 400) + L"a*(a)\\1b"},
      {"loop of groups", L"(?:()()()()()()()()()()a)*(a)\\1b"},
      {"loop of choices", L"(?:b|c|d|e|f|g|h|a)*(a)\\1b"},
      {"many loops", Largest(L"a*", L"(a)\\1b")},
      {"many groups", Largest(L"(a?)", L"\\1b")},
      {"empty loops", Repeat(L"()*", 40) + L"(a)\\1b"},
      {"empty choices", Repeat(L"(?:|)", 60) + L"(a)\\1b"},
      {"many empty groups", Largest(L"()", L"\\1b")},
      {"nested", Repeat(L"(", 99) + L"a" + Repeat(L")*", 99) + L"\\1b"},
  };
}

TEST(PatternStack, PatternsWithABackReferenceFitAgainstValuesOfEveryLength) {
  for (const auto& [label, pattern] : ReferringPatterns()) {
    for (const std::size_t length : {1U, 25U, 60U, 160U, 640U, 780U}) {
      SCOPED_TRACE(testing::Message() << label << ", " << length);
      EXPECT_LT(SecondsOf(pattern, std::wstring(length, L'a')), kLongestSeconds);
    }
  }
}

// What an expression could hide from its weighing.
TEST(PatternStack, GroupsBehindAControlCharacterAreSeen) {
  for (const wchar_t* begin : {L"\\c[", L"\\c]", L"\\c("}) {
    bool isMatch = true;
    EXPECT_TRUE(FinishesOnASmallStack(
        [&] { isMatch = MatchesPattern(begin + std::wstring(1'000'000, L'('), L"a"); }));
    EXPECT_FALSE(isMatch);
  }
}

TEST(PatternStack, RepeatedReferencesOfTwoDigitsAreSeen) {
  const std::wstring groups = Repeat(L"()", 12);
  for (const wchar_t* end : {L"\\12{0,9000}", L"\\12{9000}", L"\\12{0,9000}a?"}) {
    EXPECT_TRUE(FinishesOnASmallStack([&] { EXPECT_FALSE(MatchesPattern(groups + end, L"")); }));
  }
  EXPECT_TRUE(MatchesPattern(groups + L"\\12{0,90}", L""));
}

TEST(PatternStack, DigitsBeyondAsciiDoNotHideACount) {
  EXPECT_TRUE(
      FinishesOnASmallStack([] { EXPECT_FALSE(MatchesPattern(L"(){200\xff11\xff11}", L"")); }));
}

TEST(PatternStack, TheLongestValueForABackReferenceIsWhereItIs) {
  const std::wstring pattern = L"(a*)\\1";
  ASSERT_EQ(WeighPattern(pattern).chain, 9U);
  EXPECT_TRUE(MatchesPattern(pattern, std::wstring(796, L'a')));  // (4000 - 2 * 9) / (2 + 3)
  EXPECT_FALSE(MatchesPattern(pattern, std::wstring(798, L'a')));
}

TEST(PatternStack, ASimplePatternBearsTenMegabytes) {
  bool isMatch = false;
  EXPECT_TRUE(FinishesOnASmallStack(
      [&isMatch] { isMatch = MatchesPattern(L"[a-z]+", std::wstring(5'000'000, L'a')); }));
  EXPECT_TRUE(isMatch);
}

TEST(PatternStack, ALargePatternRunsOutOfPatienceWithALongValue) {
  const std::wstring pattern = Largest(L"a*");
  EXPECT_TRUE(MatchesPattern(pattern, std::wstring(1000, L'a')));
  EXPECT_FALSE(MatchesPattern(pattern, std::wstring(1'000'000, L'a')));
}

TEST(PatternStack, LooksAheadMakeEachStepDearer) {
  const std::wstring looks = Repeat(L"(?=.*b|a)", 50);
  const std::wstring value(100, L'a');
  EXPECT_TRUE(MatchesPattern(L".{0,4000}", value));
  EXPECT_TRUE(MatchesPattern(looks + L".{0,4000}", value.substr(0, 10)));
  EXPECT_FALSE(MatchesPattern(looks + L".{0,4000}", value)) << "patience has ended";
}

TEST(PatternStack, ThePathGuardNeedsNone) {
  EXPECT_TRUE(FinishesOnASmallStack([] {
    EXPECT_FALSE(IsClimbingPath(std::wstring(1'000'000, L'\\')));
    EXPECT_TRUE(IsClimbingPath(L"%" + std::wstring(1'000'000, L'a') + L"%.."));
  }));
}

}  // namespace
}  // namespace Zq::Gantry::Security
