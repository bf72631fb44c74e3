#pragma once

#include <windows.h>

#include <rpc.h>
#include <shellapi.h>

#include <cstring>

// A program of Windows needs none of this. Wine 8 lacks four of the library's calls or has only a
// stub, which may end the process; a host that runs under Wine gives the answers itself, in the
// library's import table.
namespace WineAnswers {

/// No client's call is being served on this thread.
inline RPC_STATUS RPC_ENTRY NoClientCall(RPC_BINDING_HANDLE, void*) { return RPC_S_NO_CALL_ACTIVE; }

/// No catalog lists any file.
inline BOOL WINAPI NoCatalog(HANDLE* context, const GUID*, const wchar_t*, const void*, DWORD) {
  *context = nullptr;
  SetLastError(ERROR_NOT_SUPPORTED);
  return FALSE;
}

inline BOOL WINAPI NoHash(HANDLE, HANDLE, DWORD* size, BYTE*, DWORD) {
  *size = 0;
  SetLastError(ERROR_NOT_SUPPORTED);
  return FALSE;
}

inline HICON WINAPI IconOf(HINSTANCE instance, char* path, WORD* index, WORD*) {
  return ExtractAssociatedIconA(instance, path, index);
}

/// Lets `module` call `replacement` where it imports `name`; nothing happens if it does not.
inline void ReplaceImport(HMODULE module, const char* name, void (*replacement)()) {
  auto* base = reinterpret_cast<unsigned char*>(module);
  const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
  const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS64*>(base + dos->e_lfanew);
  const DWORD table =
      headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
  const auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + table);
  for (; table != 0 && library->Name != 0; ++library) {
    const auto* wanted =
        reinterpret_cast<const IMAGE_THUNK_DATA64*>(base + library->OriginalFirstThunk);
    auto* slot = reinterpret_cast<IMAGE_THUNK_DATA64*>(base + library->FirstThunk);
    for (; wanted->u1.AddressOfData != 0; ++wanted, ++slot) {
      if (IMAGE_SNAP_BY_ORDINAL64(wanted->u1.Ordinal)) continue;
      const auto* import =
          reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + wanted->u1.AddressOfData);
      if (std::strcmp(reinterpret_cast<const char*>(import->Name), name) != 0) continue;
      DWORD protection = 0;
      VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection);
      slot->u1.Function = reinterpret_cast<ULONGLONG>(replacement);
      VirtualProtect(slot, sizeof *slot, protection, &protection);
    }
  }
}

template <typename Function>
void Answer(HMODULE library, const char* name, Function* function) {
  ReplaceImport(library, name, reinterpret_cast<void (*)()>(function));
}

/// Does nothing outside Wine. Before the first call into the library.
inline void Install(HMODULE library) {
  const HMODULE system = GetModuleHandleW(L"ntdll.dll");
  if (system == nullptr || GetProcAddress(system, "wine_get_version") == nullptr) return;
  Answer(library, "RpcServerInqCallAttributesW", &NoClientCall);
  Answer(library, "CryptCATAdminAcquireContext2", &NoCatalog);
  Answer(library, "CryptCATAdminCalcHashFromFileHandle2", &NoHash);
  Answer(library, "ExtractAssociatedIconExA", &IconOf);
}

}  // namespace WineAnswers
