#include <gtest/gtest.h>

#include <cstdio>
#include <cwctype>
#include <optional>
#include <regex>
#include <string>
#include <vector>

#include "security/pattern/expression_features.h"
#include "security/pattern/pattern.h"
#include "security/pattern/random_expressions.h"

namespace Zq::Gantry::Security {
namespace {

using namespace std::string_literals;
using namespace TestSupport;

constexpr std::size_t kExpressions = 14'000;
constexpr std::size_t kTextsEach = 20;

/// An expression beyond the standard library's limit on states is skipped; it may still be valid.
struct StandardExpression {
  std::optional<std::wregex> compiled;
  bool isBeyondItsLimits = false;
};

StandardExpression CompileStandard(const std::wstring& expression) {
  try {
    return {std::wregex(expression), false};
  } catch (const std::regex_error& error) {
    return {std::nullopt, error.code() == std::regex_constants::error_space};
  }
}

/// Whether the C library classifies the character as nothing: some know more than the "C" locale.
bool IsUnknownToTheCLibrary(wchar_t character) {
  const auto c = static_cast<std::wint_t>(character);
  return !std::iswprint(c) && !std::iswspace(c) && !std::iswcntrl(c) && !std::iswalnum(c) &&
         !std::iswpunct(c);
}

std::wstring OtherCharacters() {
  std::wstring others = L"\r\t\0\x1f+]"s;
  for (const wchar_t c : {L'\x2028', L'\xD800', L'\xE4', L'\xFFFF'}) {
    if (IsUnknownToTheCLibrary(c)) others += c;
  }
  return others;
}

bool MayDifferInValidity(const ExpressionFeatures& features, bool isOursValid) {
  // As the end of a range, a control character may be less than the range's first one.
  if (features.hasControlLetter) return true;
  return isOursValid ? features.hasCollatedCharacter || features.hasCollatedRangeEnd
                     : features.hasTwoQuantifiers || features.hasDigitAfterNull ||
                           features.hasControlWithoutLetter;
}

/// With the C library of mingw-w64 [:blank:] matches nothing.
bool IsBlankClassSupported() {
  static const bool isSupported = std::regex_match(L" ", std::wregex(L"[[:blank:]]"));
  return isSupported;
}

bool MayDifferInAnswers(const std::wstring& expression, const ExpressionFeatures& features) {
  if (!IsBlankClassSupported() && expression.find(L"[:blank:]") != expression.npos) return true;
  return features.hasControlLetter || features.hasAssertionInLookAhead ||
         features.hasUncertainReference;
}

struct Tally {
  std::size_t compared = 0;
  std::size_t matches = 0;
  std::size_t skipped = 0;
  std::size_t invalid = 0;
};

void Compare(const RandomCase& random, Tally& tally) {
  const auto ours = Pattern::TryCompile(random.expression);
  const auto [standard, isBeyondItsLimits] = CompileStandard(random.expression);
  if (isBeyondItsLimits) return;
  const ExpressionFeatures features = FeaturesOf(random.expression);
  if (ours.has_value() != standard.has_value()) {
    EXPECT_TRUE(MayDifferInValidity(features, ours.has_value()))
        << (ours ? "valid only for Pattern: " : "valid only for the standard library: ")
        << testing::PrintToString(random.expression);
  }
  if (!ours && !standard) ++tally.invalid;
  if (!ours || !standard) return;
  if (MayDifferInAnswers(random.expression, features)) {
    tally.skipped += random.texts.size();
    return;
  }
  for (const std::wstring& text : random.texts) {
    const bool isMatch = ours->Matches(text);
    EXPECT_EQ(isMatch, std::regex_match(text, *standard))
        << testing::PrintToString(random.expression) << " on " << testing::PrintToString(text);
    ++tally.compared;
    if (isMatch) ++tally.matches;
  }
}

TEST(PatternOracle, AgreesWithTheStandardLibraryExceptForDocumentedDifferences) {
  RandomExpressions expressions(/*seed=*/1, OtherCharacters());
  Tally tally;
  for (std::size_t i = 0; i < kExpressions && !testing::Test::HasFailure(); ++i) {
    Compare(expressions.Next(kTextsEach), tally);
  }
  std::printf("%zu compared, %zu of them matches; %zu skipped; %zu expressions invalid for both\n",
              tally.compared, tally.matches, tally.skipped, tally.invalid);
  EXPECT_GE(tally.compared, 200'000U);
  EXPECT_GE(tally.matches, 15'000U);
  EXPECT_GE(tally.invalid, 1'000U);
}

}  // namespace
}  // namespace Zq::Gantry::Security
