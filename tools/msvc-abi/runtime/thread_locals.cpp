// thread_local objects: their memory, their constructors and destructors.

#include <windows.h>

#include "startup.h"

#pragma section(".CRT$XDA", read)
#pragma section(".CRT$XDZ", read)
#pragma section(".CRT$XLA", read)
#pragma section(".CRT$XLC", read)
#pragma section(".CRT$XLD", read)
#pragma section(".CRT$XLZ", read)

extern "C" {

// The constructors, and the functions that the loader calls when a thread begins and ends.
__declspec(allocate(".CRT$XDA")) Function __xd_a = nullptr;
__declspec(allocate(".CRT$XDZ")) Function __xd_z = nullptr;
__declspec(allocate(".CRT$XLA")) PIMAGE_TLS_CALLBACK __xl_a = nullptr;
__declspec(allocate(".CRT$XLZ")) PIMAGE_TLS_CALLBACK __xl_z = nullptr;

unsigned _tls_index = 0;
#pragma data_seg(".tls")
char _tls_start = 0;
#pragma data_seg(".tls$ZZZ")
char _tls_end = 0;
#pragma data_seg()

extern const IMAGE_TLS_DIRECTORY64 _tls_used;
const IMAGE_TLS_DIRECTORY64 _tls_used = {reinterpret_cast<ULONGLONG>(&_tls_start),
                                         reinterpret_cast<ULONGLONG>(&_tls_end),
                                         reinterpret_cast<ULONGLONG>(&_tls_index),
                                         reinterpret_cast<ULONGLONG>(&__xl_a + 1),
                                         0,
                                         0};

// Compiled code asks it before it uses a thread_local object with a constructor.
__declspec(thread) bool __tls_guard = false;

}  // extern "C"

namespace {

// In blocks, since a thread's destructors must not need the C heap.
struct Destructors {
  Function functions[30];
  int count;
  Destructors* next;
};

__declspec(thread) Destructors firstBlock{};
__declspec(thread) Destructors* newestBlock = nullptr;

}  // namespace

extern "C" {

int __cdecl __tlregdtor(Function destructor) {
  if (newestBlock == nullptr) newestBlock = &firstBlock;
  if (newestBlock->count == 30) {
    auto* block = static_cast<Destructors*>(
        HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, sizeof(Destructors)));
    if (block == nullptr) return -1;
    block->next = newestBlock;
    newestBlock = block;
  }
  newestBlock->functions[newestBlock->count++] = destructor;
  return 0;
}

void __cdecl __dyn_tls_on_demand_init() {
  if (__tls_guard) return;
  __tls_guard = true;
  for (Function* constructor = &__xd_a + 1; constructor != &__xd_z; ++constructor) {
    if (*constructor != nullptr) (*constructor)();
  }
}

static void WINAPI BeginThread(PVOID, DWORD reason, PVOID) {
  if (reason == DLL_THREAD_ATTACH) __dyn_tls_on_demand_init();
}

static void WINAPI EndThread(PVOID, DWORD reason, PVOID) {
  if (reason != DLL_THREAD_DETACH && reason != DLL_PROCESS_DETACH) return;
  while (newestBlock != nullptr) {
    while (newestBlock->count != 0) newestBlock->functions[--newestBlock->count]();
    Destructors* done = newestBlock;
    newestBlock = done->next;
    if (done != &firstBlock) HeapFree(GetProcessHeap(), 0, done);
  }
}

__declspec(allocate(".CRT$XLC")) extern const PIMAGE_TLS_CALLBACK wattleaf_begin_thread =
    BeginThread;
__declspec(allocate(".CRT$XLD")) extern const PIMAGE_TLS_CALLBACK wattleaf_end_thread = EndThread;

}  // extern "C"

// The first thread began before the loader could call for it.
void MsvcAbi::ConstructThreadLocals() { __dyn_tls_on_demand_init(); }
