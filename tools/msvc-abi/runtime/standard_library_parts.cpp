// What the standard library's sources expect from the C runtime and from newer versions of
// msvcp140.dll.

#include <windows.h>

#include <stdlib.h>

extern "C" {

// The instruction sets that its vectorised algorithms ask for: SSE2 to AVX2 (xbit_ops.h).
long __isa_enabled = (1 << 0) | (1 << 1) | (1 << 2) | (1 << 3) | (1 << 5);
int __isa_available = 5;

// std::call_once. The library itself gives these names to the Windows calls in assembly language.
int WINAPI __std_init_once_begin_initialize_clr(void** once, unsigned long flags, int* pending,
                                                void** context) {
  return InitOnceBeginInitialize(reinterpret_cast<PINIT_ONCE>(once), flags, pending, context);
}
int WINAPI __std_init_once_complete_clr(void** once, unsigned long flags, void* context) {
  return InitOnceComplete(reinterpret_cast<PINIT_ONCE>(once), flags, context);
}
void WINAPI __std_init_once_link_alternate_names_and_abort() noexcept { abort(); }

}  // extern "C"
