#pragma once

#include <windows.h>

#include <memory>
#include <vector>

#include "import_patch.h"

namespace Standin {

/// A call of the library that is simulated because the system lacks it or has only a stub.
struct SimulatedCall {
  const char* name;
  /// Why the call is simulated, and what the simulated call returns.
  const char* reason;
  void (*replacement)();
};

/// All calls that can be simulated. The README lists them too.
[[nodiscard]] const std::vector<SimulatedCall>& AllSimulatedCalls();

/// Simulates the calls of the list that one module imports, in its import table. The destructor
/// restores them.
class SimulatedCalls {
 public:
  /// With `enabled` false, simulates no call.
  SimulatedCalls(HMODULE module, bool enabled);

  /// The calls that are simulated in this module.
  [[nodiscard]] const std::vector<SimulatedCall>& InPlace() const { return inPlace_; }

 private:
  std::vector<std::unique_ptr<ImportPatch>> patches_;
  std::vector<SimulatedCall> inPlace_;
};

}  // namespace Standin
