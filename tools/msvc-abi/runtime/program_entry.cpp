// Where a program with `main` begins.

#include "startup.h"

extern "C" {

__declspec(dllimport) int __cdecl _configure_narrow_argv(int mode);
__declspec(dllimport) int __cdecl _initialize_narrow_environment();
__declspec(dllimport) int* __cdecl __p___argc();
__declspec(dllimport) char*** __cdecl __p___argv();

// By its plain name: `main` itself may not be called.
int __cdecl MainOfProgram(int argc, char** argv) __asm__("main");
int __cdecl StartProgram() __asm__("mainCRTStartup");

static void TakeArguments() {
  constexpr int kUnexpandedArguments = 1;
  _configure_narrow_argv(kUnexpandedArguments);
  _initialize_narrow_environment();
}

static int CallMain() { return MainOfProgram(*__p___argc(), *__p___argv()); }

int __cdecl StartProgram() { MsvcAbi::RunProgram(TakeArguments, CallMain); }

}  // extern "C"
