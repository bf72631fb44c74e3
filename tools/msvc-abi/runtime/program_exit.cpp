// Functions that the objects of a program register for its end.

#include "startup.h"

extern "C" {

__declspec(dllimport) int __cdecl _crt_atexit(Function);

int __cdecl atexit(Function function) { return _crt_atexit(function); }

}  // extern "C"
