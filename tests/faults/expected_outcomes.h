#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>

#include "call_failures.h"

namespace Faults {

/// The file of expected outcomes. A line "scenario | call | failure" is followed by its outcomes,
/// one line each, indented; "not reached | call | reason" names a call that no scenario makes.
/// Lines that begin with "#" are comments.
class ExpectedOutcomes {
 public:
  /// Throws std::runtime_error for a file that cannot be read.
  explicit ExpectedOutcomes(const std::string& path);

  [[nodiscard]] bool Contains(const std::string& scenario, const CallFailure& failure,
                              const std::string& outcome) const;
  /// Empty if there is no such line.
  [[nodiscard]] std::string_view WhyNotReached(const std::string& call) const;

 private:
  std::map<std::string, std::set<std::string>> outcomes_;
  std::map<std::string, std::string> notReached_;
};

}  // namespace Faults
