#pragma once

#include <cstddef>
#include <string_view>

namespace Zq::Gantry::Security {

/// How large the machine of a regular expression becomes, seen before it is made. Never less than
/// it is, apart from two states for the whole and one for each "|"; counts that no machine reaches
/// stay at a large number instead of wrapping.
struct PatternWeight {
  std::size_t states = 0;  ///< repetitions multiplied out
  /// States that may follow each other without a character between them: one way of each choice,
  /// and a repeated character once. What compiling and matching take of the stack.
  std::size_t chain = 0;
  std::size_t loop = 0;     ///< the chain of the largest part that may go round
  std::size_t groups = 0;   ///< "(" of every kind
  std::size_t looks = 0;    ///< those that look ahead
  std::size_t nesting = 0;  ///< groups inside groups
};

/// Weighs an expression in the ECMAScript grammar. One that no machine can be made of has a weight
/// too. Takes linear time, and a stack that does not depend on the text.
PatternWeight WeighPattern(std::wstring_view pattern);

}  // namespace Zq::Gantry::Security
