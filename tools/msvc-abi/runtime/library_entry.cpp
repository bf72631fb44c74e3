// Where a library is loaded and freed. Functions that its objects register for the end run when it
// is freed.

#include <windows.h>

#include "startup.h"

extern "C" {

struct ExitTable {
  Function* first;
  Function* last;
  Function* end;
};
__declspec(dllimport) int __cdecl _initialize_onexit_table(ExitTable*);
__declspec(dllimport) int __cdecl _register_onexit_function(ExitTable*, Function);
__declspec(dllimport) int __cdecl _execute_onexit_table(ExitTable*);

static ExitTable exitTable;

int __cdecl atexit(Function function) { return _register_onexit_function(&exitTable, function); }

// A library need not have a DllMain.
BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved);
BOOL WINAPI wattleaf_no_DllMain(HINSTANCE, DWORD, LPVOID) { return TRUE; }
#pragma comment(linker, "/alternatename:DllMain=wattleaf_no_DllMain")

static void EndLibrary() {
  _execute_onexit_table(&exitTable);
  MsvcAbi::RunTerminators();
}

BOOL WINAPI _DllMainCRTStartup(HINSTANCE module, DWORD reason, LPVOID reserved) {
  if (reason == DLL_PROCESS_ATTACH) {
    _initialize_onexit_table(&exitTable);
    if (!MsvcAbi::RunInitializers()) return FALSE;
  }
  const BOOL accepted = DllMain(module, reason, reserved);
  if (reason == DLL_PROCESS_DETACH || (reason == DLL_PROCESS_ATTACH && !accepted)) EndLibrary();
  return accepted;
}

}  // extern "C"
