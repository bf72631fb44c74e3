#include "security/access/pattern_match.h"

#include <regex>

#include "security/access/match_patience.h"
#include "security/access/pattern_compilation.h"
#include "security/access/pattern_weight.h"

namespace Zq::Gantry::Security {

namespace {

bool IsBearable(const PatternWeight& weight) {
  return weight.states <= kMostPatternStates && weight.chain <= kLongestPatternChain &&
         weight.nesting <= kDeepestPatternNesting;
}

/// Raises regex_error for what neither compiles nor ends in time.
bool MatchWhole(const std::wstring& pattern, const PatternWeight& weight,
                const std::wstring& value) {
  const CompiledPattern compiled = CompilePattern(pattern, weight);
  if (value.size() > compiled.mostCharacters) return false;

  // A look may copy the places of all groups. A step may visit all states, and each look ahead
  // makes them ready for itself, which is an eighth of the work.
  const std::size_t movePrice = 1 + weight.states + weight.states * weight.looks / 8;
  MatchPatience patience(kMatchPatience, 4 + weight.groups, movePrice);
  const PatientPosition begin(value.data(), patience);
  const PatientPosition end(value.data() + value.size(), patience);
  return std::regex_match(begin, end, compiled.expression);
}

}  // namespace

bool MatchesPattern(const std::wstring& pattern, const std::wstring& value) {
  const PatternWeight weight = WeighPattern(pattern);
  if (!IsBearable(weight)) return false;
  try {
    return MatchWhole(pattern, weight, value);
  } catch (const std::regex_error&) {
    return false;
  }
}

}  // namespace Zq::Gantry::Security
