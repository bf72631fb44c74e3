// The lists of functions that run before main and after it. Compilers put pointers into sections,
// which the linker sorts by the letters after "$", so that these arrays enclose them.

#include "startup.h"

#pragma section(".CRT$XIA", read)
#pragma section(".CRT$XIZ", read)
#pragma section(".CRT$XCA", read)
#pragma section(".CRT$XCZ", read)
#pragma section(".CRT$XPA", read)
#pragma section(".CRT$XPZ", read)
#pragma section(".CRT$XTA", read)
#pragma section(".CRT$XTZ", read)

extern "C" {

__declspec(allocate(".CRT$XIA")) CheckedFunction __xi_a[] = {nullptr};
__declspec(allocate(".CRT$XIZ")) CheckedFunction __xi_z[] = {nullptr};
__declspec(allocate(".CRT$XCA")) Function __xc_a[] = {nullptr};
__declspec(allocate(".CRT$XCZ")) Function __xc_z[] = {nullptr};
__declspec(allocate(".CRT$XPA")) Function __xp_a[] = {nullptr};
__declspec(allocate(".CRT$XPZ")) Function __xp_z[] = {nullptr};
__declspec(allocate(".CRT$XTA")) Function __xt_a[] = {nullptr};
__declspec(allocate(".CRT$XTZ")) Function __xt_z[] = {nullptr};

// The object with the names of POSIX.
#pragma comment(linker, "/include:wmemset")
// Called as imports, so that the linker would not look for them in this archive.
#pragma comment(linker, "/include:?__ExceptionPtrRethrow@@YAXPEBX@Z")
#pragma comment(linker, "/include:?_Throw_Cpp_error@std@@YAXH@Z")

// Compiled code refers to it where it uses floating point.
int _fltused = 0x9875;

}  // extern "C"

namespace MsvcAbi {

bool RunInitializers() {
  if (_initterm_e(__xi_a, __xi_z) != 0) return false;
  _initterm(__xc_a, __xc_z);
  ConstructThreadLocals();
  return true;
}

void RunTerminators() {
  _initterm(__xp_a, __xp_z);
  _initterm(__xt_a, __xt_z);
  FreeTypeNames();
}

}  // namespace MsvcAbi
