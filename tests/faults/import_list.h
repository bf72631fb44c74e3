#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace Faults {

/// One entry of a module's import table.
struct Import {
  std::string library;
  std::string name;
  void** slot;
  /// False for a variable.
  bool isFunction;
};

/// The whole import table of a loaded module. Throws std::runtime_error if it imports a function by
/// its number only.
[[nodiscard]] std::vector<Import> ImportsOf(HMODULE module);

/// Replaces the address in an import table.
void WriteSlot(void** slot, void* value);

}  // namespace Faults
