#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace Zq::Gantry::Security {

/// What the watch over a match is called for. The numbers stand in the expression as callouts.
enum class WatchPoint : unsigned {
  kMoved = 0,              ///< the match has come to a place
  kFixedRun = 1,           ///< a long repetition with a fixed part begins
  kChoice = 2,             ///< a group of many alternatives begins
  kRepeatedReference = 3,  ///< a repeated back-reference begins
  kReference = 4,          ///< one to group 1 begins; the other groups' numbers follow
};

/// Groups after this one cannot be referred to: callouts have numbers up to 255.
inline constexpr std::size_t kLastGroupToReferTo = 250;

/// An expression in the words of PCRE2.
struct Translation {
  std::u16string expression;
  std::size_t groups = 0;           ///< those that capture
  std::size_t longestFixedRun = 0;  ///< the largest count that a repetition of one item begins with
  std::size_t mostAlternatives = 0;  ///< of all groups
  std::size_t mostWideRanges = 0;    ///< of all classes, those beyond U+00FF, which are searched
};

/// The expression for PCRE2, or nothing if it is not valid in the default grammar (ECMAScript) of
/// the standard's regular expressions. docs/rules.md has that grammar's edges. Takes time that the
/// limit on its length bounds, and a stack that does not depend on the expression.
///
/// Between two watch points a match passes at most some hundred characters, apart from what can be
/// worked out at the second one. Counts beyond 65,535 are not valid, since PCRE2 has none.
std::optional<Translation> TranslateExpression(std::u16string_view expression);

}  // namespace Zq::Gantry::Security
