// Where a program with `main` begins.

#include <windows.h>

#include <stdlib.h>

#include "startup.h"

extern "C" {

__declspec(dllimport) int __cdecl _configure_narrow_argv(int mode);
__declspec(dllimport) int __cdecl _initialize_narrow_environment();
__declspec(dllimport) int* __cdecl __p___argc();
__declspec(dllimport) char*** __cdecl __p___argv();
__declspec(dllimport) void __cdecl _set_app_type(int type);
__declspec(dllimport) int __cdecl _seh_filter_exe(unsigned long code, void* pointers);
__declspec(dllimport) int __cdecl _crt_atexit(Function);

// By its plain name: `main` itself may not be called.
int __cdecl MainOfProgram(int argc, char** argv) __asm__("main");
int __cdecl StartProgram() __asm__("mainCRTStartup");

static void __cdecl EndProgram() { MsvcAbi::RunTerminators(); }

int __cdecl StartProgram() {
  constexpr int kConsoleProgram = 1;
  constexpr int kUnexpandedArguments = 1;
  __try {
    _set_app_type(kConsoleProgram);
    _configure_narrow_argv(kUnexpandedArguments);
    _initialize_narrow_environment();
    _crt_atexit(EndProgram);
    if (!MsvcAbi::RunInitializers()) _exit(255);
    exit(MainOfProgram(*__p___argc(), *__p___argv()));
  } __except (_seh_filter_exe(_exception_code(), _exception_info())) {
    _exit(static_cast<int>(_exception_code()));
  }
}

}  // extern "C"
