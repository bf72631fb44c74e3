#pragma once

#include <string>
#include <vector>

#include "host_process.h"

namespace TestSupport {

/// A run of the host that is installed on the simulated notebook, and the lines of the service's
/// log.
struct NotebookRun {
  HostRun host;
  std::vector<std::string> log;

  /// How often the log has exactly this line.
  long CountInLog(const std::string& line) const;
};

NotebookRun RunOnNotebook(const std::vector<std::wstring>& arguments);

/// False on a machine without the simulated notebook, where the tests of it are skipped.
bool NotebookIsThere();

}  // namespace TestSupport
