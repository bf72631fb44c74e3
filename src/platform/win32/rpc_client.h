#pragma once

#include <windows.h>

#include <rpc.h>

// The client of the remote procedure call that the calling thread serves, and its package.

#if defined(__MINGW32__)
/// The package family name of a process, with terminator. Declared here since not every SDK has the
/// declaration, though its import libraries have the call. `length` counts characters with the
/// terminator, in and out; `name` may be null for a length of 0. Returns 0,
/// ERROR_INSUFFICIENT_BUFFER, APPMODEL_ERROR_NO_PACKAGE or another error.
extern "C" __declspec(dllimport) LONG WINAPI
    GetPackageFamilyName(HANDLE process, UINT32* length, PWSTR name);
#else
#include <appmodel.h>
#endif

namespace Zq::Gantry::Platform {

/// The client of the remote procedure call that a thread serves.
struct RpcClient {
  /// The result of the query. Unless it is RPC_S_OK, the thread serves no call, or its client could
  /// not be determined.
  RPC_STATUS status = RPC_S_OK;
  DWORD processId = 0;  ///< 0 after a failure
};

/// Queries the client of the calling thread (RpcServerInqCallAttributesW). Local calls only.
/// Nothing is logged.
[[nodiscard]] RpcClient QueryRpcClient();

/// The calling thread acts as the client of its call from construction (RpcImpersonateClient) to
/// destruction (RpcRevertToSelf), on every way out. If impersonation fails, nothing is reverted. A
/// revert that fails is ignored, and the thread then goes on as the client.
class RpcImpersonation {
 public:
  RpcImpersonation() : status_(RpcImpersonateClient(/*binding=*/nullptr)) {}
  RpcImpersonation(const RpcImpersonation&) = delete;
  RpcImpersonation& operator=(const RpcImpersonation&) = delete;
  ~RpcImpersonation() {
    if (status_ == RPC_S_OK) RpcRevertToSelf();
  }

  /// RPC_S_OK: the thread acts as its client.
  [[nodiscard]] RPC_STATUS Status() const { return status_; }

 private:
  const RPC_STATUS status_;
};

}  // namespace Zq::Gantry::Platform
