#include <algorithm>
#include <limits>
#include <optional>

#include "security/access/pattern_compilation.h"

namespace Zq::Gantry::Security {

namespace {

/// What the matcher with back-tracking may stack up: within half a megabyte in the worst of the
/// measured patterns.
constexpr std::size_t kMostStackedStates = 4000;

/// What lies outside loops is passed once, at twice the stack of its weight. Each character adds at
/// most one round of the largest loop, or a step of a repeated character, which weighs like `a*`.
std::size_t MostCharacters(const PatternWeight& weight) {
  const std::size_t shared = kMostStackedStates / weight.chain;
  const std::size_t once = 2 * weight.chain;
  if (once >= kMostStackedStates) return shared;
  const std::size_t each = 2 + std::max<std::size_t>(weight.loop, 3);
  return std::max(shared, (kMostStackedStates - once) / each);
}

/// For the matcher without back-tracking, whose stack does not grow with the value. Absent where it
/// refuses the pattern: it knows no back-references.
std::optional<std::wregex> TryCompileForLongValues(const std::wstring& pattern) {
  try {
    return std::wregex(pattern,
                       std::regex_constants::ECMAScript | std::regex_constants::__polynomial);
  } catch (const std::regex_error& error) {
    if (error.code() != std::regex_constants::error_complexity) throw;
    return std::nullopt;
  }
}

}  // namespace

CompiledPattern CompilePattern(const std::wstring& pattern, const PatternWeight& weight) {
  if (std::optional<std::wregex> expression = TryCompileForLongValues(pattern)) {
    return {*std::move(expression), std::numeric_limits<std::size_t>::max()};
  }
  return {std::wregex(pattern), MostCharacters(weight)};
}

}  // namespace Zq::Gantry::Security
