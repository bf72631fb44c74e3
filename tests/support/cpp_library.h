#pragma once

#include <windows.h>

namespace TestSupport {

/// The module that allocates and frees for `new` and `delete`: the C++ library that the program
/// shares or, where that is linked in, the program.
inline HMODULE CppLibrary() {
  const HMODULE library = GetModuleHandleW(L"libstdc++-6.dll");
  return library != nullptr ? library : GetModuleHandleW(nullptr);
}

}  // namespace TestSupport
