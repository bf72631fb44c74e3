#pragma once

#include <string>
#include <vector>

#include "answers/answer.h"

namespace WattleafHost {

struct SimulatedRow {
  std::string name;
  std::string reason;
};

/// One run of the host. All texts are UTF-8.
struct Report {
  std::string version;
  std::string time;  ///< of the answers: ISO 8601 with the zone's offset
  std::string zone;  ///< the system's name of its time zone
  std::string library;
  /// "completed", "not started" or "still running"; empty without serve-once.
  std::string pass;
  std::vector<SimulatedRow> simulatedCalls;
  std::vector<Answer> answers;
  std::string dataFolder;
  /// The input of command 2.
  std::string iconFolder;
  unsigned int days = 0;
  /// Empty if the log goes to standard error.
  std::string log;
};

/// One object on one line; docs/formats/host-output.md.
[[nodiscard]] std::string ToJson(const Report& report);

}  // namespace WattleafHost
