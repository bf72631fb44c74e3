#pragma once

#include <string>
#include <vector>

#include "answer.h"

namespace WattleafHost {

struct SimulatedRow {
  std::string name;
  std::string reason;
};

/// What the host hands to machines. All texts are UTF-8.
struct Report {
  std::string version;
  std::string library;
  /// "completed", "not started" or "still running"; empty where no pass was asked for.
  std::string pass;
  std::vector<SimulatedRow> simulatedCalls;
  std::vector<Answer> answers;
  std::string dataFolder;
  /// What command 2 is asked with.
  std::string iconFolder;
  unsigned int days = 0;
  /// Empty where the log goes to standard error.
  std::string log;
};

/// One object on one line: "host", "library", "pass" (where there was one), "simulatedCalls"
/// (objects of "name" and "reason"), "commands" (objects of "number", "title", "status" and "text",
/// which is null unless the status is 0), "dataFolder", "iconFolder", "days" and "log" (a text or
/// null).
std::string ToJson(const Report& report);

}  // namespace WattleafHost
