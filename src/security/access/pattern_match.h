#pragma once

#include <cstddef>
#include <string>

namespace Zq::Gantry::Security {

// What a pattern may be, and what a match may cost; docs/rules.md has the measurements.
inline constexpr std::size_t kMostPatternStates = 20'000;
inline constexpr std::size_t kLongestPatternChain = 2500;
inline constexpr std::size_t kDeepestPatternNesting = 100;
inline constexpr std::size_t kMatchPatience = 100'000'000;

/// Whether the whole value matches the expression, in the default grammar. False too where the
/// expression does not compile, and where expression or value pass what the matcher bears.
bool MatchesPattern(const std::wstring& pattern, const std::wstring& value);

}  // namespace Zq::Gantry::Security
