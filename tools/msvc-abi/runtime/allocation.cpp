// operator new and delete over the C heap. A program may replace each of them.

#include <malloc.h>
#include <stdlib.h>

#include <new>

#define REPLACEABLE __attribute__((weak))

extern "C" __declspec(dllimport) int __cdecl _callnewh(size_t);

const std::nothrow_t std::nothrow{};

namespace {

// Calls the program's new handler until there is memory or the handler gives up.
template <typename Allocate>
void* AllocateOrThrow(size_t size, Allocate allocate) {
  for (;;) {
    if (void* block = allocate(size)) return block;
    if (_callnewh(size) != 0) continue;
    if (size == ~size_t{0}) throw std::bad_array_new_length();
    throw std::bad_alloc();
  }
}

}  // namespace

REPLACEABLE void* __cdecl operator new(size_t size) { return AllocateOrThrow(size, malloc); }
REPLACEABLE void* __cdecl operator new[](size_t size) { return operator new(size); }
REPLACEABLE void* __cdecl operator new(size_t size, const std::nothrow_t&) noexcept {
  try {
    return operator new(size);
  } catch (...) {
    return nullptr;
  }
}
REPLACEABLE void* __cdecl operator new[](size_t size, const std::nothrow_t& mark) noexcept {
  return operator new(size, mark);
}
REPLACEABLE void* __cdecl operator new(size_t size, std::align_val_t alignment) {
  return AllocateOrThrow(size, [alignment](size_t bytes) {
    return _aligned_malloc(bytes, static_cast<size_t>(alignment));
  });
}
REPLACEABLE void* __cdecl operator new[](size_t size, std::align_val_t alignment) {
  return operator new(size, alignment);
}
REPLACEABLE void* __cdecl operator new(size_t size, std::align_val_t alignment,
                                       const std::nothrow_t&) noexcept {
  return _aligned_malloc(size, static_cast<size_t>(alignment));
}
REPLACEABLE void* __cdecl operator new[](size_t size, std::align_val_t alignment,
                                         const std::nothrow_t&) noexcept {
  return _aligned_malloc(size, static_cast<size_t>(alignment));
}

REPLACEABLE void __cdecl operator delete(void* block) noexcept { free(block); }
REPLACEABLE void __cdecl operator delete[](void* block) noexcept { free(block); }
REPLACEABLE void __cdecl operator delete(void* block, size_t) noexcept { free(block); }
REPLACEABLE void __cdecl operator delete[](void* block, size_t) noexcept { free(block); }
REPLACEABLE void __cdecl operator delete(void* block, const std::nothrow_t&) noexcept {
  free(block);
}
REPLACEABLE void __cdecl operator delete[](void* block, const std::nothrow_t&) noexcept {
  free(block);
}
REPLACEABLE void __cdecl operator delete(void* block, std::align_val_t) noexcept {
  _aligned_free(block);
}
REPLACEABLE void __cdecl operator delete[](void* block, std::align_val_t) noexcept {
  _aligned_free(block);
}
REPLACEABLE void __cdecl operator delete(void* block, std::align_val_t,
                                         const std::nothrow_t&) noexcept {
  _aligned_free(block);
}
REPLACEABLE void __cdecl operator delete[](void* block, std::align_val_t,
                                           const std::nothrow_t&) noexcept {
  _aligned_free(block);
}
REPLACEABLE void __cdecl operator delete(void* block, size_t, std::align_val_t) noexcept {
  _aligned_free(block);
}
REPLACEABLE void __cdecl operator delete[](void* block, size_t, std::align_val_t) noexcept {
  _aligned_free(block);
}
