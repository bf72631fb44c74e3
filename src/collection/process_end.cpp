#include "collection/process_end.h"

#include <windows.h>

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

bool isProcessEnding = false;

}  // namespace

bool IsProcessEnding() { return isProcessEnding; }

}  // namespace Zq::Gantry::Server::Services::Wattleaf

// Called before the static clean-up. On DLL_PROCESS_DETACH the system passes null if the library is
// freed, and another pointer if the process ends. Nothing else is done here.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* reserved) {
  if (reason == DLL_PROCESS_DETACH) {
    Zq::Gantry::Server::Services::Wattleaf::isProcessEnding = reserved != nullptr;
  }
  return TRUE;
}
