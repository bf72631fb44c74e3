#pragma once

#include <windows.h>

#include <rpc.h>

#include <functional>

#include "platform/win32/owners.h"

namespace TestSupport {

/// A server of local procedure calls in this process, with clients in processes of their own. One
/// at a time. Fails the test where the system offers no such server.
class LocalRpcServer {
 public:
  LocalRpcServer();
  LocalRpcServer(const LocalRpcServer&) = delete;
  LocalRpcServer& operator=(const LocalRpcServer&) = delete;
  ~LocalRpcServer();

  /// Starts a client, runs `work` on the thread that serves its call, and waits for both. Fails the
  /// test where the client does not call, or does not end well and in time.
  void Serve(std::function<void()> work);

  /// The client of the moment.
  DWORD ClientId() const { return clientId_; }
  HANDLE ClientProcess() const { return client_.get(); }

  /// Ends the client in the middle of its call, and keeps no handle to it.
  void EndClient();

  /// Runs the work; only for the procedure that clients call.
  static void RunWork();

 private:
  void StartClient();
  void WaitForClient();

  std::function<void()> work_;
  Zq::Gantry::Platform::UniqueHandle client_;
  DWORD clientId_ = 0;
  Zq::Gantry::Platform::UniqueHandle served_;  // an event: the work is done
};

/// The process that the calling thread serves, as the runtime tells it.
RPC_STATUS TellClient(unsigned long& client);

/// RpcServerInqCallAttributesW for systems that lack it: the client that the runtime tells.
RPC_STATUS RPC_ENTRY AnswerWithTheTrueClient(RPC_BINDING_HANDLE binding, void* attributes);

}  // namespace TestSupport
