#include "simulated_system.h"

#include <windows.h>

#include <rpc.h>
#include <wincrypt.h>
#include <wintrust.h>

#include <mscat.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <cwchar>

#include "support/call_attributes.h"

namespace Faults {

namespace {

std::atomic<int> held = 0;
std::atomic<bool> isClientUnreachable = false;

constexpr DWORD kHashBytes = 32;
constexpr wchar_t kFamily[] = L"C7E40B19.ZQHarbourDesk_q7m3xk2tdw9pa";

const HANDLE kContext = reinterpret_cast<HANDLE>(0x1CA7);
const HANDLE kCatalog = reinterpret_cast<HANDLE>(0x2CA7);

BOOL WINAPI AcquireContext(HANDLE* context, const GUID*, const wchar_t*, const void*, DWORD) {
  *context = kContext;
  ++held;
  return TRUE;
}

BOOL WINAPI ReleaseContext(HANDLE, DWORD) {
  --held;
  return TRUE;
}

BOOL WINAPI Hash(HANDLE, HANDLE, DWORD* bytes, BYTE* hash, DWORD) {
  *bytes = kHashBytes;
  if (hash != nullptr) std::fill_n(hash, kHashBytes, BYTE{0xA5});
  return TRUE;
}

HANDLE WINAPI FindCatalog(HANDLE, BYTE*, DWORD, DWORD, HANDLE*) {
  ++held;
  return kCatalog;
}

BOOL WINAPI ReleaseCatalog(HANDLE, HANDLE, DWORD) {
  --held;
  return TRUE;
}

BOOL WINAPI InfoOfCatalog(HANDLE, CATALOG_INFO* info, DWORD) {
  std::wcscpy(info->wszCatalogFile, L"C:\\windows\\system32\\catroot\\simulated.cat");
  return TRUE;
}

RPC_STATUS RPC_ENTRY Client(RPC_BINDING_HANDLE, void* attributes) {
  TestSupport::WriteClientId(attributes,
                             isClientUnreachable ? kUnreachableClient : GetCurrentProcessId());
  return RPC_S_OK;
}

RPC_STATUS RPC_ENTRY Impersonate(RPC_BINDING_HANDLE) {
  ++held;
  return RPC_S_OK;
}

RPC_STATUS RPC_ENTRY Revert() {
  --held;
  return RPC_S_OK;
}

LONG WINAPI Family(HANDLE, UINT32* chars, wchar_t* name) {
  constexpr UINT32 kChars = static_cast<UINT32>(std::size(kFamily));
  const bool fits = name != nullptr && *chars >= kChars;
  *chars = kChars;
  if (!fits) return ERROR_INSUFFICIENT_BUFFER;
  std::wcscpy(name, kFamily);
  return ERROR_SUCCESS;
}

template <typename Function>
void* Address(Function* function) {
  return reinterpret_cast<void*>(function);
}

}  // namespace

LoadedLibrary::Replacements WorkingCatalogs() {
  return {{"CryptCATAdminAcquireContext2", Address(&AcquireContext)},
          {"CryptCATAdminReleaseContext", Address(&ReleaseContext)},
          {"CryptCATAdminCalcHashFromFileHandle2", Address(&Hash)},
          {"CryptCATAdminEnumCatalogFromHash", Address(&FindCatalog)},
          {"CryptCATAdminReleaseCatalogContext", Address(&ReleaseCatalog)},
          {"CryptCATCatalogInfoFromContext", Address(&InfoOfCatalog)}};
}

LoadedLibrary::Replacements ClientCall() {
  return {{"RpcServerInqCallAttributesW", Address(&Client)},
          {"RpcImpersonateClient", Address(&Impersonate)},
          {"RpcRevertToSelf", Address(&Revert)},
          {"GetPackageFamilyName", Address(&Family)}};
}

void ServeUnreachableClient(bool unreachable) { isClientUnreachable = unreachable; }
int HeldBySimulatedSystem() { return held; }
void ForgetHeldBySimulatedSystem() { held = 0; }

}  // namespace Faults
