#pragma once

#include <cstddef>
#include <regex>
#include <string>

#include "security/access/pattern_weight.h"

namespace Zq::Gantry::Security {

struct CompiledPattern {
  std::wregex expression;
  /// Values beyond it are not matched: the matcher's stack grows with the value.
  std::size_t mostCharacters = 0;
};

/// An expression in the default grammar, for the matcher of this standard library that bears the
/// longest values. Raises regex_error where it does not compile. `weight` is the pattern's own.
CompiledPattern CompilePattern(const std::wstring& pattern, const PatternWeight& weight);

}  // namespace Zq::Gantry::Security
