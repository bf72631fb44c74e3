#include <limits>
#include <optional>

#include "security/access/pattern_compilation.h"

namespace Zq::Gantry::Security {

namespace {

/// Characters times states that the matcher with back-tracking may stack up: a quarter of what a
/// stack of 1 MB bears in the worst of the measured patterns.
constexpr std::size_t kMostStackedStates = 4000;

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
  return {std::wregex(pattern), kMostStackedStates / weight.states};
}

}  // namespace Zq::Gantry::Security
