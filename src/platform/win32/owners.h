#pragma once

#include <windows.h>

#include <cstdlib>

#include "platform/win32/unique_resource.h"

// The owners of Win32 and C library resources, one policy each. A release keeps the last error, so
// that a failure can still be reported after its scope has ended.
namespace Zq::Gantry::Platform {

class LastErrorKeeper {
 public:
  LastErrorKeeper() = default;
  LastErrorKeeper(const LastErrorKeeper&) = delete;
  LastErrorKeeper& operator=(const LastErrorKeeper&) = delete;
  ~LastErrorKeeper() { SetLastError(error_); }

 private:
  const DWORD error_ = GetLastError();
};

/// Process, thread, token, event: empty is null.
struct HandlePolicy {
  using Type = HANDLE;
  static Type Empty() { return nullptr; }
  static void Release(Type handle) {
    const LastErrorKeeper keeper;
    CloseHandle(handle);
  }
};
using UniqueHandle = UniqueResource<HandlePolicy>;

/// A call may leave INVALID_HANDLE_VALUE for "none" where null is meant; that is nothing to close.
inline void DropInvalid(UniqueHandle& handle) {
  if (handle.get() == INVALID_HANDLE_VALUE) static_cast<void>(handle.release());
}

/// File from CreateFile: empty is INVALID_HANDLE_VALUE.
struct FileHandlePolicy {
  using Type = HANDLE;
  static Type Empty() { return INVALID_HANDLE_VALUE; }
  static void Release(Type handle) {
    const LastErrorKeeper keeper;
    CloseHandle(handle);
  }
};
using UniqueFileHandle = UniqueResource<FileHandlePolicy>;

/// Search from FindFirstFile: empty is INVALID_HANDLE_VALUE.
struct FindHandlePolicy {
  using Type = HANDLE;
  static Type Empty() { return INVALID_HANDLE_VALUE; }
  static void Release(Type handle) {
    const LastErrorKeeper keeper;
    FindClose(handle);
  }
};
using UniqueFindHandle = UniqueResource<FindHandlePolicy>;

struct ModulePolicy {
  using Type = HMODULE;
  static Type Empty() { return nullptr; }
  static void Release(Type module) {
    const LastErrorKeeper keeper;
    FreeLibrary(module);
  }
};
using UniqueModule = UniqueResource<ModulePolicy>;

/// Registry key that was opened; the predefined ones are nobody's.
struct RegKeyPolicy {
  using Type = HKEY;
  static Type Empty() { return nullptr; }
  static void Release(Type key) {
    const LastErrorKeeper keeper;
    RegCloseKey(key);
  }
};
using UniqueRegKey = UniqueResource<RegKeyPolicy>;

/// Icon that the shell or the system made for its caller.
struct IconPolicy {
  using Type = HICON;
  static Type Empty() { return nullptr; }
  static void Release(Type icon) {
    const LastErrorKeeper keeper;
    DestroyIcon(icon);
  }
};
using UniqueIcon = UniqueResource<IconPolicy>;

/// Block of the local heap, as CryptUnprotectData and GetNamedSecurityInfo hand out.
struct LocalBlockPolicy {
  using Type = void*;
  static Type Empty() { return nullptr; }
  static void Release(Type block) {
    const LastErrorKeeper keeper;
    LocalFree(block);
  }
};
using UniqueLocalBlock = UniqueResource<LocalBlockPolicy>;

/// Block of the C heap.
struct HeapBlockPolicy {
  using Type = void*;
  static Type Empty() { return nullptr; }
  static void Release(Type block) {
    const LastErrorKeeper keeper;
    std::free(block);
  }
};
using UniqueHeapBlock = UniqueResource<HeapBlockPolicy>;

}  // namespace Zq::Gantry::Platform
