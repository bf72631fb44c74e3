#pragma once

#include <windows.h>

#include <memory>
#include <vector>

#include "import_patch.h"

namespace Standin {

/// One call of the library that is answered here in place of a system that lacks it or only stubs
/// it.
struct PlayedCall {
  const char* name;
  /// Why it is played, and what the played call answers.
  const char* reason;
  void (*replacement)();
};

/// The whole list, the only one.
const std::vector<PlayedCall>& AllPlayedCalls();

/// Plays, in one module's import table and for as long as it lives, the calls of the list that the
/// module imports.
class PlayedCalls {
 public:
  /// With `enabled` false, none is played.
  PlayedCalls(HMODULE module, bool enabled);

  /// The calls that are in place.
  const std::vector<PlayedCall>& InPlace() const { return inPlace_; }

 private:
  std::vector<std::unique_ptr<ImportPatch>> patches_;
  std::vector<PlayedCall> inPlace_;
};

}  // namespace Standin
