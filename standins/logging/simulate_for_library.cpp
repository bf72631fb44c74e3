// Part of a second build of the Logging.dll stand-in, for programs that link the library and use no
// stand-ins themselves. The library always loads Logging.dll, so this DLL simulates the calls of
// simulated_calls.h in the library's import table, for as long as it is loaded.

#include <windows.h>

#include <optional>

#include "simulated_calls.h"

namespace {

std::optional<Standin::SimulatedCalls> simulated;

}  // namespace

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void*) {
  if (reason != DLL_PROCESS_ATTACH) return TRUE;
  // The system fills all import tables of a program before it calls the first DllMain.
  if (const HMODULE library = GetModuleHandleW(L"WattleafService.dll")) {
    simulated.emplace(library, /*enabled=*/true);
  }
  return TRUE;
}
