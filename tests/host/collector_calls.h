#pragma once

#include <string>
#include <vector>

#include "host_process.h"
#include "support/temp_folder.h"

namespace TestSupport {

/// Lets the collector of the simulated notebook record its calls for programs that are run while
/// this object lives.
class CollectorCalls {
 public:
  /// In their order: create, load, callback, start, stop, destroy, unload.
  std::vector<std::string> Lines() const;

 private:
  const TempFolder folder_;
  const std::wstring path_ = folder_.File(L"calls.txt");
  const ScopedVariable variable_{L"WATTLEAF_COLLECTOR_CALLS", path_};
};

}  // namespace TestSupport
