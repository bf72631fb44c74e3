#pragma once

#include <windows.h>

namespace TestSupport {

/// The module whose imports `new` and `delete` call: the shared C++ library, or the program if the
/// library is linked statically.
[[nodiscard]] inline HMODULE CppLibrary() {
  const HMODULE library = GetModuleHandleW(L"libstdc++-6.dll");
  return library != nullptr ? library : GetModuleHandleW(nullptr);
}

}  // namespace TestSupport
