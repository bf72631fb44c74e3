#pragma once

#include <windows.h>

#include <rpc.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "import_patch.h"

namespace TestSupport {

/// Fakes every system call that identifying a caller takes while this object exists, and records
/// them in order. By default all succeed, and the client 4321 is the package
/// "Some.App_q7m3xk2tdw9pa". One at a time.
class FakeCaller {
 public:
  static constexpr DWORD kClient = 4321;
  static constexpr LONG kFits = 0;
  static constexpr LONG kTooSmall = 122;

  FakeCaller();
  FakeCaller(const FakeCaller&) = delete;
  FakeCaller& operator=(const FakeCaller&) = delete;
  ~FakeCaller();

  [[nodiscard]] static HANDLE Handle(std::uintptr_t number) {
    return reinterpret_cast<HANDLE>(number);
  }

  /// Removes what was recorded so far.
  void ClearRecords();

  // What the calls return.
  std::array<RPC_STATUS, 2> queryStatus{};  ///< of the first and of the second query
  DWORD client = kClient;
  HANDLE process = Handle(0x1111);
  BOOL duplicated = TRUE;
  HANDLE copy = Handle(0x2222);
  RPC_STATUS impersonateStatus = RPC_S_OK;
  RPC_STATUS revertStatus = RPC_S_OK;
  LONG lengthStatus = kTooSmall;
  LONG nameStatus = kFits;
  /// Written by the second name query. Both queries report its length.
  std::wstring name = std::wstring(L"Some.App_q7m3xk2tdw9pa") + L'\0';
  std::size_t written = std::wstring::npos;  ///< at most so many of its characters
  void (*duringFirstNameQuery)() = nullptr;  ///< throws, where a test needs an exception there

  // What was recorded.
  std::vector<std::string> order;
  std::vector<std::vector<unsigned char>> queries;  ///< the 120 bytes as the caller filled them
  std::vector<RPC_BINDING_HANDLE> bindings;         ///< of queries and impersonations
  std::vector<DWORD> opened;                        ///< access, inherit, process id
  std::vector<HANDLE> duplicatedFrom;               ///< process, handle, process
  std::vector<DWORD> duplicatedWith;                ///< access, inherit, options
  std::vector<UINT32> lengths;                      ///< passed to the name queries
  std::vector<const wchar_t*> buffers;
  std::vector<HANDLE> closed;

 private:
  static RPC_STATUS RPC_ENTRY Query(RPC_BINDING_HANDLE binding, void* attributes);
  static HANDLE WINAPI Open(DWORD access, BOOL inherit, DWORD client);
  static BOOL WINAPI Duplicate(HANDLE fromProcess, HANDLE handle, HANDLE toProcess, HANDLE* copy,
                               DWORD access, BOOL inherit, DWORD options);
  static RPC_STATUS RPC_ENTRY Impersonate(RPC_BINDING_HANDLE binding);
  static RPC_STATUS RPC_ENTRY Revert();
  static LONG WINAPI QueryName(HANDLE process, UINT32* length, wchar_t* name);
  static BOOL WINAPI Close(HANDLE handle);

  Standin::ImportPatch queryPatch_{"RpcServerInqCallAttributesW", &Query};
  Standin::ImportPatch openPatch_{"OpenProcess", &Open};
  Standin::ImportPatch duplicatePatch_{"DuplicateHandle", &Duplicate};
  Standin::ImportPatch impersonatePatch_{"RpcImpersonateClient", &Impersonate};
  Standin::ImportPatch revertPatch_{"RpcRevertToSelf", &Revert};
  Standin::ImportPatch namePatch_{"GetPackageFamilyName", &QueryName};
  Standin::ImportPatch closePatch_{"CloseHandle", &Close};
};

}  // namespace TestSupport
