#pragma once

#include <string>
#include <vector>

#include "doctor/machine_facts.h"

namespace WattleafHost {

/// How bad a finding is.
enum class Severity {
  kFine,
  kNote,      ///< worth knowing; nothing is wrong
  kProblem,   ///< some figures are missing or wrong
  kNoEnergy,  ///< this machine cannot measure
};

/// One step of the road that a start takes.
struct Finding {
  Severity severity = Severity::kFine;
  std::string step;   ///< "platform", "collector", ...
  std::string cause;  ///< a fixed name for programs: "collector-unsigned"; "fine" if all is well
  std::string found;
  std::string means;
  std::string remedy;  ///< empty if there is nothing to do
};

/// The findings in the order of a start. Each step has at least one.
[[nodiscard]] std::vector<Finding> Diagnose(const MachineFacts& facts);

/// Whether this machine can measure.
[[nodiscard]] bool CanMeasure(const std::vector<Finding>& findings);

/// A line that the log of a healthy machine has too, and why.
struct NormalLogLine {
  const char* line;
  const char* reason;
};
[[nodiscard]] const std::vector<NormalLogLine>& NormalLogLines();

/// For people, and one JSON object on one line.
[[nodiscard]] std::string ToText(const MachineFacts& facts, const std::vector<Finding>& findings);
[[nodiscard]] std::string ToJson(const MachineFacts& facts, const std::vector<Finding>& findings);

}  // namespace WattleafHost
