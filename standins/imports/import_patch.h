#pragma once

#include <windows.h>

#include <stdexcept>

namespace Standin {

/// The entry of `module`'s import table with the address of `name`; null if it is not imported.
[[nodiscard]] void** FindImportSlot(HMODULE module, const char* name);

/// The running program or, if that does not import `name`, the library of its C++ runtime that
/// does. The program if neither does.
[[nodiscard]] HMODULE ModuleThatCalls(const char* name);

/// Replaces one imported function in a module's import table, for calls from that module only; the
/// destructor restores it. For code that is linked into the test program, the module is the
/// program.
class ImportPatch {
 public:
  /// Throws std::runtime_error if `module` does not import `name`.
  template <typename Function>
  ImportPatch(HMODULE module, const char* name, Function* replacement)
      : ImportPatch(module, name, reinterpret_cast<void*>(replacement), 0) {}

  /// The same for the module that ModuleThatCalls finds: the shared C++ runtime makes some calls
  /// for the program, for example to start a thread or to read a file's status.
  template <typename Function>
  ImportPatch(const char* name, Function* replacement)
      : ImportPatch(ModuleThatCalls(name), name, replacement) {}

  ImportPatch(const ImportPatch&) = delete;
  ImportPatch& operator=(const ImportPatch&) = delete;
  ~ImportPatch();

  /// The function that was replaced.
  template <typename Function>
  [[nodiscard]] Function* Original() const {
    return reinterpret_cast<Function*>(original_);
  }

 private:
  ImportPatch(HMODULE module, const char* name, void* replacement, int);

  void** slot_ = nullptr;
  void* original_ = nullptr;
};

}  // namespace Standin
