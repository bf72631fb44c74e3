// Part of a second form of the Logging.dll stand-in, for programs that link the library and know
// nothing of stand-ins. The library cannot be loaded without Logging.dll, so what the system lacks
// is simulated from here: the calls of simulated_calls.h, in the library's import table, while it
// is loaded.

#include <windows.h>

#include <optional>

#include "simulated_calls.h"

namespace {

std::optional<Standin::SimulatedCalls> simulated;

}  // namespace

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void*) {
  if (reason != DLL_PROCESS_ATTACH) return TRUE;
  // The imports of all libraries of a program are in place before the first of them is told so.
  if (const HMODULE library = GetModuleHandleW(L"WattleafService.dll")) {
    simulated.emplace(library, /*enabled=*/true);
  }
  return TRUE;
}
