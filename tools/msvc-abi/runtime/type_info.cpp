// type_info over vcruntime140.dll, which compares names and makes them readable.

#include <typeinfo>

#include "startup.h"

extern "C" {

__declspec(dllimport) int __cdecl __std_type_info_compare(const __std_type_info_data*,
                                                          const __std_type_info_data*);
__declspec(dllimport) size_t __cdecl __std_type_info_hash(const __std_type_info_data*);
__declspec(dllimport) const char* __cdecl __std_type_info_name(__std_type_info_data*, void*);
__declspec(dllimport) void __cdecl __std_type_info_destroy_list(void*);

// The head of the list of readable names.
alignas(16) static void* typeNames[2];

// Compiled code calls it where an exception would leave a noexcept function.
[[noreturn]] void __cdecl __std_terminate() noexcept { terminate(); }

// For the table of virtual functions below. type_info objects are data of the compiler and are
// never deleted.
void* __cdecl wattleaf_delete_type_info(void* object, unsigned) { return object; }

}  // extern "C"

type_info::~type_info() noexcept = default;
size_t type_info::hash_code() const noexcept { return __std_type_info_hash(&_Data); }
bool type_info::operator==(const type_info& other) const noexcept {
  return __std_type_info_compare(&_Data, &other._Data) == 0;
}
bool type_info::before(const type_info& other) const noexcept {
  return __std_type_info_compare(&_Data, &other._Data) < 0;
}
const char* type_info::name() const noexcept { return __std_type_info_name(&_Data, typeNames); }
const char* type_info::raw_name() const noexcept { return _Data._DecoratedName; }

void MsvcAbi::FreeTypeNames() { __std_type_info_destroy_list(typeNames); }

// The table of virtual functions, to which all type_info objects of the compiler refer. clang
// writes it only for a class with a constructor that it compiles.
__asm__(R"(
  .section .rdata,"dr"
  .p2align 3
  .quad 0
  .globl "??_7type_info@@6B@"
"??_7type_info@@6B@":
  .quad wattleaf_delete_type_info
  .text
)");
