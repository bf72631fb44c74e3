#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "call_failures.h"
#include "scenarios.h"

namespace Faults {

/// One call that fails at one of its uses.
struct Fault {
  CallFailure call;
  std::uint32_t position;
};

/// What one run of a scenario did.
struct Observation {
  std::vector<std::string> results;
  std::vector<std::string> log;
  Files files;
  Files icons;
  /// The same after the next use, in which all calls work.
  std::vector<std::string> nextResults;
  Files nextFiles;
  Files nextIcons;
  /// Handles, objects and references that the run left, by name; without those that are zero.
  std::map<std::string, long> left;

  std::vector<Import> imports;
  /// Uses by name, until the failing call's scenario ended.
  std::map<std::string, std::uint32_t> calls;
};

/// Loads the library, runs the scenario and frees the library. `fault` may be null.
[[nodiscard]] Observation Observe(const Scenario& scenario, const PreparedFolders& folders,
                                  const Fault* fault);

/// How `observed` differs from the run in which no call failed; empty if it does not.
[[nodiscard]] std::string Differences(const Observation& undisturbed, const Observation& observed);

}  // namespace Faults
