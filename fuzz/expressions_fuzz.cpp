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

using namespace Zq::Gantry::Security;
using Fuzz::Require;

namespace {

// The standard library takes stack and exponential time for long ones.
constexpr std::size_t kMostExpressionCharsCompared = 24;
constexpr std::size_t kMostTextChars = 8;

std::wstring Widened(const std::string& text) {
  std::wstring wide;
  for (const char c : text) wide += static_cast<wchar_t>(c & 0x7F);
  return wide;
}

/// The standard library copies the part before a count so often, and overflows a long number.
bool HasLongNumber(const std::wstring& expression) {
  static const std::wregex number(LR"([{,]\d\d|\d{9})");
  return std::regex_search(expression, number);
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
  if (expression.size() > kMostExpressionCharsCompared || HasLongNumber(expression)) return 0;

  const auto ours = Pattern::TryCompile(expression);
  const auto [standard, isBeyondItsLimits] = CompileStandard(expression);
  if (isBeyondItsLimits) return 0;
  const auto features = TestSupport::FeaturesOf(expression);
  if (ours.has_value() != standard.has_value()) Require(MayDifferInValidity(features));
  if (!ours || !standard || MayDifferInAnswers(features)) return 0;
  Require(ours->Matches(text) == std::regex_match(text, *standard));
  return 0;
}
