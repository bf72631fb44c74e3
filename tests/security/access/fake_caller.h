#pragma once

#include <windows.h>

#include <rpc.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "import_patch.h"

namespace TestSupport {

/// Fakes every system call that telling a caller takes, for as long as it lives, and writes down
/// which was made when. As it stands, all succeed: the client 4321 is the package
/// "Some.App_q7m3xk2tdw9pa".
class FakeCaller {
 public:
  static constexpr DWORD kClient = 4321;
  static constexpr LONG kFits = 0;
  static constexpr LONG kTooSmall = 122;

  FakeCaller();
  FakeCaller(const FakeCaller&) = delete;
  FakeCaller& operator=(const FakeCaller&) = delete;
  ~FakeCaller();

  static HANDLE Handle(std::uintptr_t number) { return reinterpret_cast<HANDLE>(number); }

  /// Empties what was written down.
  void Forget();

  // What the calls answer.
  std::array<RPC_STATUS, 2> queryStatus{};  ///< of the first and of the second query
  DWORD client = kClient;
  HANDLE process = Handle(0x1111);
  BOOL duplicated = TRUE;
  HANDLE copy = Handle(0x2222);
  RPC_STATUS impersonateStatus = RPC_S_OK;
  RPC_STATUS revertStatus = RPC_S_OK;
  LONG lengthStatus = kTooSmall;
  LONG nameStatus = kFits;
  /// What the second name query writes; the length that both report is its own.
  std::wstring name = std::wstring(L"Some.App_q7m3xk2tdw9pa") + L'\0';
  std::size_t written = std::wstring::npos;  ///< as many of its characters, and no more
  void (*whileAsking)() = nullptr;           ///< runs within the first name query

  // What they were asked.
  std::vector<std::string> order;
  std::vector<std::vector<unsigned char>> queries;  ///< the 120 bytes as they were handed in
  std::vector<RPC_BINDING_HANDLE> bindings;         ///< of queries and impersonations
  std::vector<DWORD> opened;                        ///< access, inherit, process id
  std::vector<HANDLE> duplicatedFrom;               ///< process, handle, process
  std::vector<DWORD> duplicatedWith;                ///< access, inherit, options
  std::vector<UINT32> lengths;                      ///< told to the name queries
  std::vector<const wchar_t*> buffers;
  std::vector<HANDLE> closed;

 private:
  static RPC_STATUS RPC_ENTRY Query(RPC_BINDING_HANDLE binding, void* attributes);
  static HANDLE WINAPI Open(DWORD access, BOOL inherit, DWORD client);
  static BOOL WINAPI Duplicate(HANDLE fromProcess, HANDLE handle, HANDLE toProcess, HANDLE* copy,
                               DWORD access, BOOL inherit, DWORD options);
  static RPC_STATUS RPC_ENTRY Impersonate(RPC_BINDING_HANDLE binding);
  static RPC_STATUS RPC_ENTRY Revert();
  static LONG WINAPI AskName(HANDLE process, UINT32* length, wchar_t* name);
  static BOOL WINAPI Close(HANDLE handle);

  Standin::ImportPatch queryPatch_{"RpcServerInqCallAttributesW", &Query};
  Standin::ImportPatch openPatch_{"OpenProcess", &Open};
  Standin::ImportPatch duplicatePatch_{"DuplicateHandle", &Duplicate};
  Standin::ImportPatch impersonatePatch_{"RpcImpersonateClient", &Impersonate};
  Standin::ImportPatch revertPatch_{"RpcRevertToSelf", &Revert};
  Standin::ImportPatch namePatch_{"GetPackageFamilyName", &AskName};
  Standin::ImportPatch closePatch_{"CloseHandle", &Close};
};

}  // namespace TestSupport
