// Where a program with `wmain` begins.

#include "startup.h"

extern "C" {

__declspec(dllimport) int __cdecl _configure_wide_argv(int mode);
__declspec(dllimport) int __cdecl _initialize_wide_environment();
__declspec(dllimport) int* __cdecl __p___argc();
__declspec(dllimport) wchar_t*** __cdecl __p___wargv();

int __cdecl wmain(int argc, wchar_t** argv);

static void TakeArguments() {
  constexpr int kUnexpandedArguments = 1;
  _configure_wide_argv(kUnexpandedArguments);
  _initialize_wide_environment();
}

static int CallMain() { return wmain(*__p___argc(), *__p___wargv()); }

int __cdecl wmainCRTStartup() { MsvcAbi::RunProgram(TakeArguments, CallMain); }

}  // extern "C"
