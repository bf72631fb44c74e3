// std::rethrow_exception. Wine 8 throws the object that the exception_ptr owns, which dies with the
// last exception_ptr while it may still be caught. As documented, this throws a copy.

#include <malloc.h>
#include <string.h>
#include <windows.h>

namespace {

constexpr DWORD kCppException = 0xE06D7363;

// How the compiler describes a thrown object. Offsets are from the module's base.
struct CatchableType {
  unsigned flags;  // 1: plain bytes; 4: has virtual bases
  unsigned type;
  int displacement[3];
  int size;
  unsigned copy;
};
struct CatchableTypes {
  int count;
  unsigned types[1];
};
struct ThrowInfo {
  unsigned attributes;
  unsigned destroy;
  unsigned forward;
  unsigned types;
};
// What std::exception_ptr refers to.
struct ExceptionPtr {
  EXCEPTION_RECORD* record;
  LONG* references;
};

template <typename T>
T* At(ULONG_PTR base, unsigned offset) {
  return reinterpret_cast<T*>(base + offset);
}

void Copy(void* to, void* from, ULONG_PTR base, const CatchableType& type) {
  if (type.copy == 0 || (type.flags & 1) != 0) {
    memcpy(to, from, static_cast<size_t>(type.size));
  } else if ((type.flags & 4) != 0) {
    reinterpret_cast<void (*)(void*, void*, int)>(base + type.copy)(to, from, 1);
  } else {
    reinterpret_cast<void (*)(void*, void*)>(base + type.copy)(to, from);
  }
}

}  // namespace

void __cdecl __ExceptionPtrRethrow(const void* pointer) {
  const EXCEPTION_RECORD* record = static_cast<const ExceptionPtr*>(pointer)->record;
  if (record == nullptr) RaiseException(STATUS_ACCESS_VIOLATION, 1, 0, nullptr);
  const ULONG_PTR* described = record->ExceptionInformation;
  if (record->ExceptionCode != kCppException || described[2] == 0) {
    RaiseException(record->ExceptionCode, record->ExceptionFlags & ~2U, record->NumberParameters,
                   described);
  }
  const ULONG_PTR base = described[3];
  const auto* info = reinterpret_cast<const ThrowInfo*>(described[2]);
  const auto* type = At<CatchableType>(base, At<CatchableTypes>(base, info->types)->types[0]);
  // On this frame, which lives as long as the exception, as that of a throw expression.
  void* copy = _alloca(static_cast<size_t>(type->size));
  Copy(copy, reinterpret_cast<void*>(described[1]), base, *type);
  const ULONG_PTR arguments[] = {described[0], reinterpret_cast<ULONG_PTR>(copy), described[2],
                                 base};
  RaiseException(kCppException, EXCEPTION_NONCONTINUABLE, 4, arguments);
}
