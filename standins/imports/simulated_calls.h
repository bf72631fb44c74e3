#pragma once

#include <windows.h>

#include <memory>
#include <vector>

#include "import_patch.h"

namespace Standin {

/// One call of the library that is answered here in place of a system that lacks it or only stubs
/// it.
struct SimulatedCall {
  const char* name;
  /// Why it is simulated, and what the simulated call answers.
  const char* reason;
  void (*replacement)();
};

/// The whole list, the only one.
const std::vector<SimulatedCall>& AllSimulatedCalls();

/// Simulates, in one module's import table and for as long as it lives, the calls of the list that
/// the module imports.
class SimulatedCalls {
 public:
  /// With `enabled` false, none is simulated.
  SimulatedCalls(HMODULE module, bool enabled);

  /// The calls that are in place.
  const std::vector<SimulatedCall>& InPlace() const { return inPlace_; }

 private:
  std::vector<std::unique_ptr<ImportPatch>> patches_;
  std::vector<SimulatedCall> inPlace_;
};

}  // namespace Standin
