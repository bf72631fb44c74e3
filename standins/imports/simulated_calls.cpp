// Calls that Wine lacks or only stubs, simulated with a result that Windows documents. Part of the
// simulated notebook; a real Windows needs none of them.

#include "simulated_calls.h"

#include <rpc.h>
#include <shellapi.h>

namespace Standin {

namespace {

RPC_STATUS RPC_ENTRY NoClientCall(RPC_BINDING_HANDLE, void*) { return RPC_S_NO_CALL_ACTIVE; }

BOOL WINAPI NoCatalogContext(HANDLE* context, const GUID*, const wchar_t*, const void*, DWORD) {
  if (context != nullptr) *context = nullptr;
  SetLastError(ERROR_NOT_SUPPORTED);
  return FALSE;
}

BOOL WINAPI NoCatalogHash(HANDLE, HANDLE, DWORD* size, BYTE*, DWORD) {
  if (size != nullptr) *size = 0;
  SetLastError(ERROR_NOT_SUPPORTED);
  return FALSE;
}

HICON WINAPI IconOfSibling(HINSTANCE instance, char* path, WORD* index, WORD*) {
  return ExtractAssociatedIconA(instance, path, index);
}

template <typename Function>
auto Address(Function* function) {
  return reinterpret_cast<void (*)()>(function);
}

}  // namespace

const std::vector<SimulatedCall>& AllSimulatedCalls() {
  static const std::vector<SimulatedCall> calls = {
      {"RpcServerInqCallAttributesW",
       "Wine 8 ends the process; answers 1725, no client's call is being served",
       Address(&NoClientCall)},
      {"CryptCATAdminAcquireContext2",
       "Wine 8 has a stub; fails with 50, so no catalog lists any file",
       Address(&NoCatalogContext)},
      {"CryptCATAdminCalcHashFromFileHandle2", "Wine 8 ends the process; fails with 50, no hash",
       Address(&NoCatalogHash)},
      {"ExtractAssociatedIconExA",
       "Wine 8 gives no icon; answers what ExtractAssociatedIconA gives", Address(&IconOfSibling)},
  };
  return calls;
}

SimulatedCalls::SimulatedCalls(HMODULE module, bool enabled) {
  if (!enabled) return;
  for (const SimulatedCall& call : AllSimulatedCalls()) {
    if (FindImportSlot(module, call.name) == nullptr) continue;
    patches_.push_back(std::make_unique<ImportPatch>(module, call.name, call.replacement));
    inPlace_.push_back(call);
  }
}

}  // namespace Standin
