#pragma once

#include <string_view>

namespace TestSupport {

/// What in an expression GCC's standard library and this one see differently; docs/rules.md names
/// the same differences.
struct ExpressionFeatures {
  // Accepted by the standard library, not by us.
  bool hasTwoQuantifiers = false;        ///< a+*
  bool hasDigitAfterNull = false;        ///< \01
  bool hasControlWithoutLetter = false;  ///< \c1
  // Accepted by us, not by the standard library.
  bool hasCollatedCharacter = false;  ///< [.-.], a character that is no letter
  bool hasCollatedRangeEnd = false;   ///< [a-[.b.]]
  // Accepted by both, with other answers.
  bool hasControlLetter = false;       ///< \cJ
  bool hasPlaceInLookAhead = false;    ///< ^, \b or \B in a look-ahead
  bool hasUncertainReference = false;  ///< to a group that may not have matched
};

/// Read character by character, so that an invalid expression has features too.
ExpressionFeatures FeaturesOf(std::wstring_view expression);

}  // namespace TestSupport
