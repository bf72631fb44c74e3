// What the entry points of programs have in common, and functions that objects register for the
// end.

#include <windows.h>

#include <stdlib.h>

#include "startup.h"

extern "C" {

__declspec(dllimport) void __cdecl _set_app_type(int type);
__declspec(dllimport) int __cdecl _seh_filter_exe(unsigned long code, void* pointers);
__declspec(dllimport) int __cdecl _crt_atexit(Function);

int __cdecl atexit(Function function) { return _crt_atexit(function); }

}  // extern "C"

namespace MsvcAbi {

void RunProgram(void (*takeArguments)(), int (*callMain)()) {
  constexpr int kConsoleProgram = 1;
  __try {
    _set_app_type(kConsoleProgram);
    takeArguments();
    _crt_atexit(RunTerminators);
    if (!RunInitializers()) _exit(255);
    exit(callMain());
  } __except (_seh_filter_exe(_exception_code(), _exception_info())) {
    _exit(static_cast<int>(_exception_code()));
  }
}

}  // namespace MsvcAbi
