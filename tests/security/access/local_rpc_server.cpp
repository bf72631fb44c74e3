#include "local_rpc_server.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "caller_probe.h"
#include "rpc_memory.h"
#include "support/call_attributes.h"
#include "support/program_folder.h"

namespace TestSupport {

namespace {

using Zq::Gantry::Platform::UniqueHandle;

constexpr DWORD kLongestCallMilliseconds = 30'000;
constexpr DWORD kLongestEndMilliseconds = 10'000;

LocalRpcServer* current = nullptr;

wchar_t protocol[] = L"ncalrpc";

std::wstring ClientCommand(const std::wstring& endpoint) {
  return L"\"" + PathBesideProgram(L"caller_client.exe") + L"\" " + endpoint;
}

/// The endpoint of this process. Listening starts with the first use, since a process can start it
/// only once.
const std::wstring& ListeningEndpoint() {
  static const std::wstring endpoint = [] {
    std::wstring name = L"wattleaf-caller-" + std::to_wstring(GetCurrentProcessId());
    EXPECT_EQ(RpcServerUseProtseqEpW(
                  reinterpret_cast<RPC_WSTR>(protocol), RPC_C_PROTSEQ_MAX_REQS_DEFAULT,
                  reinterpret_cast<RPC_WSTR>(name.data()), /*securityDescriptor=*/nullptr),
              RPC_S_OK);
    EXPECT_EQ(RpcServerListen(1, RPC_C_LISTEN_MAX_CALLS_DEFAULT, /*dontWait=*/TRUE), RPC_S_OK);
    return name;
  }();
  return endpoint;
}

}  // namespace

LocalRpcServer::LocalRpcServer()
    : served_(CreateEventW(nullptr, /*manualReset=*/FALSE, /*initialState=*/FALSE, nullptr)) {
  current = this;
  ListeningEndpoint();
  EXPECT_EQ(RpcServerRegisterIf(CallerProbe_v1_0_s_ifspec, nullptr, nullptr), RPC_S_OK);
}

LocalRpcServer::~LocalRpcServer() {
  // Without waiting: the call of a client that was terminated may never complete.
  RpcServerUnregisterIf(CallerProbe_v1_0_s_ifspec, nullptr, /*waitForCalls=*/FALSE);
  current = nullptr;
}

void LocalRpcServer::Serve(std::function<void()> work) {
  work_ = std::move(work);
  StartClient();
  EXPECT_EQ(WaitForSingleObject(served_.get(), kLongestCallMilliseconds), WAIT_OBJECT_0)
      << "the client did not call";
  if (client_) WaitForClient();
}

void LocalRpcServer::EndClient() {
  TerminateProcess(client_.get(), 0);
  EXPECT_EQ(WaitForSingleObject(client_.get(), kLongestEndMilliseconds), WAIT_OBJECT_0);
  client_.reset();
  // The system may keep a process for a moment after its last handle was closed.
  const ULONGLONG end = GetTickCount64() + kLongestEndMilliseconds;
  while (UniqueHandle(OpenProcess(SYNCHRONIZE, /*inherit=*/FALSE, clientId_))) {
    ASSERT_LT(GetTickCount64(), end) << "another handle keeps the client's process";
    Sleep(10);
  }
}

void LocalRpcServer::RunWork() {
  current->work_();
  SetEvent(current->served_.get());
}

void LocalRpcServer::StartClient() {
  std::wstring command = ClientCommand(ListeningEndpoint());
  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION process{};
  // Suspended, so that clientId_ is set before the client can call.
  ASSERT_TRUE(CreateProcessW(nullptr, command.data(), nullptr, nullptr, /*inheritHandles=*/FALSE,
                             DETACHED_PROCESS | CREATE_SUSPENDED, nullptr, nullptr, &startup,
                             &process))
      << "cannot start the client, Windows error " << GetLastError();
  const UniqueHandle thread(process.hThread);
  client_.reset(process.hProcess);
  clientId_ = process.dwProcessId;
  ResumeThread(thread.get());
}

void LocalRpcServer::WaitForClient() {
  if (WaitForSingleObject(client_.get(), kLongestEndMilliseconds) != WAIT_OBJECT_0) {
    ADD_FAILURE() << "the client did not end";
    EndClient();
    return;
  }
  DWORD status = 1;
  GetExitCodeProcess(client_.get(), &status);
  EXPECT_EQ(status, 0U) << "exit status of the client";
  client_.reset();
}

RPC_STATUS QueryServedClient(unsigned long& client) {
  return I_RpcBindingInqLocalClientPID(/*binding=*/nullptr, &client);
}

RPC_STATUS RPC_ENTRY AnswerWithRealClient(RPC_BINDING_HANDLE, void* attributes) {
  unsigned long client = 0;
  const RPC_STATUS status = QueryServedClient(client);
  if (status != RPC_S_OK) return status;
  WriteClientId(attributes, client);
  return RPC_S_OK;
}

}  // namespace TestSupport

extern "C" long ServeCall(handle_t) {
  TestSupport::LocalRpcServer::RunWork();
  return 0;
}
