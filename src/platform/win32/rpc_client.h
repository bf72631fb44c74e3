#pragma once

#include <windows.h>

#include <rpc.h>

namespace Zq::Gantry::Platform {

/// The process that a thread serves a remote procedure call for.
struct RpcClient {
  RPC_STATUS status = RPC_S_OK;  ///< anything else: the thread serves no call, or cannot tell
  DWORD processId = 0;           ///< 0 where the status is a failure
};

/// Asks for the client of the calling thread (RpcServerInqCallAttributesW). Local calls only.
[[nodiscard]] RpcClient AskForRpcClient();

/// The calling thread acts as the client of its call from construction to destruction, however that
/// comes about. Where the beginning fails, nothing is ended.
class RpcImpersonation {
 public:
  RpcImpersonation() : status_(RpcImpersonateClient(/*binding=*/nullptr)) {}
  RpcImpersonation(const RpcImpersonation&) = delete;
  RpcImpersonation& operator=(const RpcImpersonation&) = delete;
  ~RpcImpersonation() {
    if (status_ == RPC_S_OK) RpcRevertToSelf();
  }

  /// RPC_S_OK: the thread acts as its client.
  RPC_STATUS Status() const { return status_; }

 private:
  const RPC_STATUS status_;
};

}  // namespace Zq::Gantry::Platform
