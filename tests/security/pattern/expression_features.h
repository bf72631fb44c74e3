#pragma once

#include <string_view>

namespace TestSupport {

/// The features of an expression that GCC's standard library and this library treat differently;
/// docs/rules.md lists the same differences.
struct ExpressionFeatures {
  // Valid for the standard library only.
  bool hasTwoQuantifiers = false;        ///< a+*
  bool hasDigitAfterNull = false;        ///< \01
  bool hasControlWithoutLetter = false;  ///< \c1
  // Valid for this library only.
  bool hasCollatedCharacter = false;  ///< [.-.], a single character that is no letter
  bool hasCollatedRangeEnd = false;   ///< [a-[.b.]]
  // Valid for both, with different matches.
  bool hasControlLetter = false;         ///< \cJ
  bool hasAssertionInLookAhead = false;  ///< ^, \b or \B in a look-ahead
  bool hasUncertainReference = false;    ///< a reference to a group that may not have matched
};

/// Reads the expression character by character, so that an invalid one has features too.
[[nodiscard]] ExpressionFeatures FeaturesOf(std::wstring_view expression);

}  // namespace TestSupport
