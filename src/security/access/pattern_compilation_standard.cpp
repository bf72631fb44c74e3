#include <limits>

#include "security/access/pattern_compilation.h"

namespace Zq::Gantry::Security {

// For a library whose matcher counts its own stack, and raises where that is used up.
CompiledPattern CompilePattern(const std::wstring& pattern, const PatternWeight& /*weight*/) {
  return {std::wregex(pattern), std::numeric_limits<std::size_t>::max()};
}

}  // namespace Zq::Gantry::Security
