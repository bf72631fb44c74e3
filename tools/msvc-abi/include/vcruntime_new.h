// operator new and delete.
#pragma once
#include <vcruntime.h>
namespace std {
struct nothrow_t {
  explicit nothrow_t() = default;
};
extern nothrow_t const nothrow;
enum class align_val_t : size_t {};
}  // namespace std
[[nodiscard]] void* __cdecl operator new(size_t);
[[nodiscard]] void* __cdecl operator new(size_t, std::nothrow_t const&) noexcept;
[[nodiscard]] void* __cdecl operator new[](size_t);
[[nodiscard]] void* __cdecl operator new[](size_t, std::nothrow_t const&) noexcept;
void __cdecl operator delete(void*) noexcept;
void __cdecl operator delete(void*, std::nothrow_t const&) noexcept;
void __cdecl operator delete[](void*) noexcept;
void __cdecl operator delete[](void*, std::nothrow_t const&) noexcept;
void __cdecl operator delete(void*, size_t) noexcept;
void __cdecl operator delete[](void*, size_t) noexcept;
[[nodiscard]] void* __cdecl operator new(size_t, std::align_val_t);
[[nodiscard]] void* __cdecl operator new(size_t, std::align_val_t, std::nothrow_t const&) noexcept;
[[nodiscard]] void* __cdecl operator new[](size_t, std::align_val_t);
[[nodiscard]] void* __cdecl operator new[](size_t, std::align_val_t,
                                           std::nothrow_t const&) noexcept;
void __cdecl operator delete(void*, std::align_val_t) noexcept;
void __cdecl operator delete(void*, std::align_val_t, std::nothrow_t const&) noexcept;
void __cdecl operator delete[](void*, std::align_val_t) noexcept;
void __cdecl operator delete[](void*, std::align_val_t, std::nothrow_t const&) noexcept;
void __cdecl operator delete(void*, size_t, std::align_val_t) noexcept;
void __cdecl operator delete[](void*, size_t, std::align_val_t) noexcept;
#define __PLACEMENT_NEW_INLINE
#define __PLACEMENT_VEC_NEW_INLINE
[[nodiscard]] inline void* __cdecl operator new(size_t, void* p) noexcept { return p; }
inline void __cdecl operator delete(void*, void*) noexcept {}
[[nodiscard]] inline void* __cdecl operator new[](size_t, void* p) noexcept { return p; }
inline void __cdecl operator delete[](void*, void*) noexcept {}
