// Any short expression against any short text: except for the differences that docs/rules.md lists,
// the standard library accepts the same expressions and finds the same matches. Characters are
// ASCII; a line end separates expression and text.
#include <algorithm>
#include <cstdint>
#include <optional>
#include <regex>
#include <string>

#include "fuzz_input.h"
#include "security/pattern/expression_features.h"
#include "security/pattern/pattern.h"
#include "watched_iterator.h"

using namespace Zq::Gantry::Security;
using Fuzz::Require;

namespace {

// The standard library takes stack for each character, and exponential time for loops in loops.
constexpr std::size_t kMostExpressionCharsCompared = 24;
constexpr std::size_t kMostTextChars = 8;
constexpr long kMostComparisons = 200'000;

std::wstring Widened(const std::string& text) {
  std::wstring wide;
  for (const char c : text) wide += static_cast<wchar_t>(c & 0x7F);
  return wide;
}

/// Both libraries copy the part before a count so often, up to different limits; the standard one
/// overflows a long number.
bool IsCopiedTooOften(const std::wstring& expression) {
  static const std::wregex longNumber(LR"([{,]\d\d|\d{9})");
  return std::ranges::count(expression, L'{') > 3 || std::regex_search(expression, longNumber);
}

struct Standard {
  std::optional<std::wregex> compiled;
  bool isBeyondItsLimits = false;
};

Standard CompileStandard(const std::wstring& expression) {
  try {
    return {std::wregex(expression), false};
  } catch (const std::regex_error& error) {
    return {std::nullopt, error.code() == std::regex_constants::error_space};
  }
}

/// Absent if the standard library takes too long.
std::optional<bool> StandardMatches(const std::wregex& compiled, const std::wstring& text) {
  long left = kMostComparisons;
  try {
    return std::regex_match(Fuzz::WatchedIterator(text.data(), left),
                            Fuzz::WatchedIterator(text.data() + text.size(), left), compiled);
  } catch (const Fuzz::TookTooLong&) {
    return std::nullopt;
  }
}

bool MayDifferInValidity(const TestSupport::ExpressionFeatures& features) {
  return features.hasControlLetter || features.hasCollatedCharacter ||
         features.hasCollatedRangeEnd || features.hasTwoQuantifiers || features.hasDigitAfterNull ||
         features.hasControlWithoutLetter;
}

bool MayDifferInAnswers(const TestSupport::ExpressionFeatures& features) {
  return features.hasControlLetter || features.hasAssertionInLookAhead ||
         features.hasUncertainReference;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Fuzz::Input input(data, size);
  const std::wstring expression = Widened(input.Line());
  const std::wstring text = Widened(input.Line()).substr(0, kMostTextChars);
  if (expression.size() > kMostExpressionCharsCompared || IsCopiedTooOften(expression)) return 0;

  const auto ours = Pattern::TryCompile(expression);
  const auto [standard, isBeyondItsLimits] = CompileStandard(expression);
  if (isBeyondItsLimits) return 0;
  const auto features = TestSupport::FeaturesOf(expression);
  if (ours.has_value() != standard.has_value()) Require(MayDifferInValidity(features));
  if (!ours || !standard || MayDifferInAnswers(features)) return 0;
  const auto isMatch = StandardMatches(*standard, text);
  if (isMatch) Require(ours->Matches(text) == *isMatch);
  return 0;
}
