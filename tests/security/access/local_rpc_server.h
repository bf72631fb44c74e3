#pragma once

#include <windows.h>

#include <rpc.h>

#include <functional>

#include "platform/win32/owners.h"

namespace TestSupport {

/// Serves local remote procedure calls in this process. Each client is a process of its own, one at
/// a time. Fails the test if the system cannot serve such calls.
class LocalRpcServer {
 public:
  LocalRpcServer();
  LocalRpcServer(const LocalRpcServer&) = delete;
  LocalRpcServer& operator=(const LocalRpcServer&) = delete;
  ~LocalRpcServer();

  /// Starts a client, runs `work` on the thread that serves its call, and waits for both. Fails the
  /// test if the client does not call, or does not end in time and with status 0.
  void Serve(std::function<void()> work);

  /// The current client.
  [[nodiscard]] DWORD ClientId() const { return clientId_; }
  [[nodiscard]] HANDLE ClientProcess() const { return client_.get(); }

  /// Terminates the client during its call and closes the handle to it.
  void EndClient();

  /// Runs the work of the current call. Only the called procedure uses this.
  static void RunWork();

 private:
  void StartClient();
  void WaitForClient();

  std::function<void()> work_;
  Zq::Gantry::Platform::UniqueHandle client_;
  DWORD clientId_ = 0;
  Zq::Gantry::Platform::UniqueHandle served_;  // an event, set when the work is done
};

/// The id of the process that the calling thread serves, from the RPC runtime.
[[nodiscard]] RPC_STATUS QueryServedClient(unsigned long& client);

/// A fake RpcServerInqCallAttributesW for systems that do not implement it. Fills in the client
/// that the RPC runtime reports.
RPC_STATUS RPC_ENTRY AnswerWithRealClient(RPC_BINDING_HANDLE binding, void* attributes);

}  // namespace TestSupport
