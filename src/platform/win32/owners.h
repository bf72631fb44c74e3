#pragma once

#include <windows.h>

#include <cstdlib>

#include "platform/win32/unique_resource.h"

// The owners of Win32 and C library resources, one policy each: the type, the value that stands for
// "no resource", and the call that releases it. Moving, replacing and keeping the last error are
// the generic owner's (unique_resource.h). A failed release is ignored. Some calls write a value
// even if they fail; such a value must not be released:
//
//   UniqueRegKey key;
//   if (RegOpenKeyExW(parent, path, /*options=*/0, KEY_READ, key.out()) != ERROR_SUCCESS) {
//     static_cast<void>(key.release());
//   }
namespace Zq::Gantry::Platform {

/// Process, thread, token or event (CloseHandle). Empty is null.
struct HandlePolicy {
  using Type = HANDLE;
  static Type Empty() { return nullptr; }
  static void Release(Type handle) { CloseHandle(handle); }
};
using UniqueHandle = UniqueResource<HandlePolicy>;

/// Empties an owner that holds INVALID_HANDLE_VALUE, without a release: some calls return this
/// value instead of null when they fail.
inline void DropInvalid(UniqueHandle& handle) {
  if (handle.get() == INVALID_HANDLE_VALUE) static_cast<void>(handle.release());
}

/// File from CreateFile (CloseHandle). Empty is INVALID_HANDLE_VALUE, as the call returns it.
struct FileHandlePolicy {
  using Type = HANDLE;
  static Type Empty() { return INVALID_HANDLE_VALUE; }
  static void Release(Type handle) { CloseHandle(handle); }
};
using UniqueFileHandle = UniqueResource<FileHandlePolicy>;

/// Search from FindFirstFile (FindClose). Empty is INVALID_HANDLE_VALUE, as the call returns it.
struct FindHandlePolicy {
  using Type = HANDLE;
  static Type Empty() { return INVALID_HANDLE_VALUE; }
  static void Release(Type handle) { FindClose(handle); }
};
using UniqueFindHandle = UniqueResource<FindHandlePolicy>;

/// Module from LoadLibrary, one reference (FreeLibrary). Not for GetModuleHandle, which takes none.
struct ModulePolicy {
  using Type = HMODULE;
  static Type Empty() { return nullptr; }
  static void Release(Type module) { FreeLibrary(module); }
};
using UniqueModule = UniqueResource<ModulePolicy>;

/// Registry key that was opened or created (RegCloseKey). Never one of the predefined keys.
struct RegKeyPolicy {
  using Type = HKEY;
  static Type Empty() { return nullptr; }
  static void Release(Type key) { RegCloseKey(key); }
};
using UniqueRegKey = UniqueResource<RegKeyPolicy>;

/// Icon that the shell or the system made for its caller (DestroyIcon). Never a shared icon.
struct IconPolicy {
  using Type = HICON;
  static Type Empty() { return nullptr; }
  static void Release(Type icon) { DestroyIcon(icon); }
};
using UniqueIcon = UniqueResource<IconPolicy>;

/// Block of the local heap, such as CryptUnprotectData and GetNamedSecurityInfo return (LocalFree).
struct LocalBlockPolicy {
  using Type = void*;
  static Type Empty() { return nullptr; }
  static void Release(Type block) { LocalFree(block); }
};
using UniqueLocalBlock = UniqueResource<LocalBlockPolicy>;

/// Block of the C heap, from malloc (free).
struct HeapBlockPolicy {
  using Type = void*;
  static Type Empty() { return nullptr; }
  static void Release(Type block) { std::free(block); }
};
using UniqueHeapBlock = UniqueResource<HeapBlockPolicy>;

}  // namespace Zq::Gantry::Platform
