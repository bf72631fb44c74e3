#include "security/pattern/pattern.h"

#include <gtest/gtest.h>

#include <string>

#include "security/pattern/expression_text.h"
#include "security/pattern/pattern_calls.h"

namespace Zq::Gantry::Security {
namespace {

using TestSupport::IsValid;
using TestSupport::Matches;
using TestSupport::Repeat;
using TestSupport::ScatteredClass;

TEST(PatternLimit, AnExpressionLongerThanTheLimitIsInvalid) {
  const std::wstring inner(kMostExpressionChars - 2, L'a');
  EXPECT_TRUE(Matches(L"[" + inner + L"]", L"a"));
  EXPECT_FALSE(IsValid(L"[" + inner + L"a]"));
}

TEST(PatternLimit, GroupsNestedDeeperThanTheLimitAreInvalid) {
  const std::wstring open(kDeepestGroups, L'(');
  const std::wstring close(kDeepestGroups, L')');
  EXPECT_TRUE(Matches(open + L"a" + close, L"a"));
  EXPECT_FALSE(IsValid(L"(" + open + L"a" + close + L")"));
}

TEST(PatternLimit, ACountAbove65535IsInvalid) {
  EXPECT_TRUE(IsValid(L"a{65535}"));
  EXPECT_FALSE(IsValid(L"a{65536}"));
  EXPECT_FALSE(IsValid(L"a{0,65536}"));
  EXPECT_FALSE(IsValid(L"a{4294967297}"));
}

TEST(PatternLimit, AReferenceToAGroupAfterThe250thIsInvalid) {
  EXPECT_TRUE(Matches(Repeat(L"()", 249) + L"(a)\\250", L"aa"));
  EXPECT_FALSE(Matches(Repeat(L"()", 249) + L"(a)\\250", L"ab"));
  EXPECT_FALSE(IsValid(Repeat(L"()", 251) + L"\\251"));
}

TEST(PatternLimit, AnExpressionTooLargeForTheEngineIsInvalid) {
  EXPECT_FALSE(IsValid(L"((a{1000}){1000}){1000}"));
  EXPECT_FALSE(IsValid(L"(?:(?:(?:){1000}){1000}){1000}"));
  EXPECT_FALSE(IsValid(std::wstring(40'000, L'a')));
  EXPECT_TRUE(Matches(std::wstring(20'000, L'a'), std::wstring(20'000, L'a')));
}

TEST(PatternLimit, AClassOfManyRangesShortensTheTextThatCanMatch) {
  // With 4,000 ranges a character costs 1 + 4,000 / 4, and 200,000,000 / 1,001 is 199,800.2.
  const auto pattern = Pattern::TryCompile(ScatteredClass(4000) + L"*");
  ASSERT_TRUE(pattern);
  EXPECT_TRUE(pattern->Matches(std::wstring(199'800, L'\x100')));
  EXPECT_FALSE(pattern->Matches(std::wstring(199'801, L'\x100')));
}

TEST(PatternLimit, TooManyBacktrackingPointsEndTheMatch) {
  // The group can repeat in 2^19 ways and in 2^24 ways.
  EXPECT_TRUE(Matches(L"(?:a|a)*b|a*", std::wstring(19, L'a')));
  EXPECT_FALSE(Matches(L"(?:a|a)*b|a*", std::wstring(24, L'a')));
}

TEST(PatternLimit, ManyGroupsLowerTheLimitOfBacktrackingPoints) {
  const std::wstring groups = Repeat(L"()", 80);
  EXPECT_TRUE(Matches(groups + L"(?:a|a)*b|a*", std::wstring(15, L'a')));
  EXPECT_FALSE(Matches(groups + L"(?:a|a)*b|a*", std::wstring(19, L'a')));
}

TEST(PatternLimit, PassingTooManyCharactersEndsTheMatch) {
  // From each position the second part passes to the end and back: the square of the length.
  EXPECT_TRUE(Matches(L".*[^x]*x|a*", std::wstring(13'000, L'a')));
  EXPECT_FALSE(Matches(L".*[^x]*x|a*", std::wstring(15'000, L'a')));
}

TEST(PatternLimit, PassedCharactersIncludeThoseThatReferencesCompare) {
  // Each length up to half the text is compared, and a compared character costs an eighth: together
  // a 64th of the square of the length.
  EXPECT_TRUE(Matches(L"(a.*)\\1x|ab*", L"a" + std::wstring(100'000, L'b')));
  EXPECT_FALSE(Matches(L"(a.*)\\1x|ab*", L"a" + std::wstring(120'000, L'b')));
}

TEST(PatternLimit, TooMuchMemoryEndsTheMatch) {
  EXPECT_FALSE(Matches(L"(a|b)*", std::wstring(1'000'000, L'a')));
}

}  // namespace
}  // namespace Zq::Gantry::Security
