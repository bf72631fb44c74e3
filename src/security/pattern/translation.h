#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace Zq::Gantry::Security {

/// The reason for a call of MatchWatch. The translated expression has these numbers as callouts.
enum class WatchPoint : unsigned {
  kMoved = 0,              ///< the match has passed some characters
  kFixedRun = 1,           ///< a long repetition with a fixed part begins
  kChoice = 2,             ///< a group of many alternatives begins
  kRepeatedReference = 3,  ///< a repeated back-reference begins
  kReference = 4,          ///< a back-reference to group 1 begins; further groups have 5, 6, ...
};

/// Groups after this one cannot be referred to: callouts have numbers up to 255.
inline constexpr std::size_t kLastGroupToReferTo = 250;

/// An expression in the syntax of PCRE2, and the numbers on which the price of a match depends.
struct Translation {
  std::u16string expression;
  std::size_t groups = 0;            ///< number of capturing groups
  std::size_t longestFixedRun = 0;   ///< largest lower bound of a repetition of one item
  std::size_t mostAlternatives = 0;  ///< largest number of alternatives in one group
  std::size_t mostWideRanges = 0;    ///< largest number of ranges beyond U+00FF in one class
};

/// Translates an expression for PCRE2. Absent if it is not valid in the default grammar
/// (ECMAScript) of the standard's regular expressions, whose edges docs/rules.md lists, or has a
/// count beyond 65,535, the largest of PCRE2. The time is bounded by the limit on the expression's
/// length, and the use of stack does not depend on the expression. Throws bad_alloc.
///
/// Between two watch points a match passes at most some hundred characters, apart from those that
/// can be counted at the second one.
[[nodiscard]] std::optional<Translation> TranslateExpression(std::u16string_view expression);

}  // namespace Zq::Gantry::Security
