#pragma once

#include <windows.h>

namespace TestSupport {

/// Whether the system is Wine and not Windows. For tests of what Wine does in another way; each of
/// them is listed in docs/proof.md.
[[nodiscard]] inline bool IsWine() {
  return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

}  // namespace TestSupport
