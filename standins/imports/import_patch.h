#pragma once

#include <windows.h>

#include <stdexcept>

namespace Standin {

/// The place in `module`'s import table that holds the address of `name`; null if it is not
/// imported.
void** FindImportSlot(HMODULE module, const char* name);

/// The running program or, if that does not import `name`, the library of its C++ runtime that
/// does. The program if none does.
HMODULE ModuleThatCalls(const char* name);

/// Replaces one imported function in a module's import table, for calls from that module only, and
/// restores it at the end. For code that is linked into the test program, the module is the
/// program.
class ImportPatch {
 public:
  /// Throws std::runtime_error where `module` does not import `name`.
  template <typename Function>
  ImportPatch(HMODULE module, const char* name, Function* replacement)
      : ImportPatch(module, name, reinterpret_cast<void*>(replacement), 0) {}

  /// The same for the running program itself. What it does not import is looked for in the import
  /// tables of the C++ runtime that it shares, which makes some calls for it: to start a thread, or
  /// to ask for a file's status.
  template <typename Function>
  ImportPatch(const char* name, Function* replacement)
      : ImportPatch(ModuleThatCalls(name), name, replacement) {}

  ImportPatch(const ImportPatch&) = delete;
  ImportPatch& operator=(const ImportPatch&) = delete;
  ~ImportPatch();

  /// The function that stood there before.
  template <typename Function>
  Function* Original() const {
    return reinterpret_cast<Function*>(original_);
  }

 private:
  ImportPatch(HMODULE module, const char* name, void* replacement, int);

  void** slot_ = nullptr;
  void* original_ = nullptr;
};

}  // namespace Standin
