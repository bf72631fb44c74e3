// Where a program with `wmain` begins.

#include <windows.h>

#include <stdlib.h>

#include "startup.h"

extern "C" {

__declspec(dllimport) int __cdecl _configure_wide_argv(int mode);
__declspec(dllimport) int __cdecl _initialize_wide_environment();
__declspec(dllimport) int* __cdecl __p___argc();
__declspec(dllimport) wchar_t*** __cdecl __p___wargv();
__declspec(dllimport) void __cdecl _set_app_type(int type);
__declspec(dllimport) int __cdecl _seh_filter_exe(unsigned long code, void* pointers);
__declspec(dllimport) int __cdecl _crt_atexit(Function);

int __cdecl wmain(int argc, wchar_t** argv);

static void __cdecl EndProgram() { MsvcAbi::RunTerminators(); }

int __cdecl wmainCRTStartup() {
  constexpr int kConsoleProgram = 1;
  constexpr int kUnexpandedArguments = 1;
  __try {
    _set_app_type(kConsoleProgram);
    _configure_wide_argv(kUnexpandedArguments);
    _initialize_wide_environment();
    _crt_atexit(EndProgram);
    if (!MsvcAbi::RunInitializers()) _exit(255);
    exit(wmain(*__p___argc(), *__p___wargv()));
  } __except (_seh_filter_exe(_exception_code(), _exception_info())) {
    _exit(static_cast<int>(_exception_code()));
  }
}

}  // extern "C"
