#include "local_rpc_server.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>

#include "caller_probe.h"
#include "rpc_memory.h"

namespace TestSupport {

namespace {

using Zq::Gantry::Platform::UniqueHandle;

constexpr std::size_t kClientPidOffset = 64;
constexpr DWORD kLongestCallMilliseconds = 30'000;
constexpr DWORD kLongestEndMilliseconds = 10'000;

LocalRpcServer* current = nullptr;

wchar_t protocol[] = L"ncalrpc";

std::wstring ClientCommand(const std::wstring& endpoint) {
  std::array<wchar_t, MAX_PATH> path{};
  GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size() - 1));
  const std::wstring self = path.data();
  return L"\"" + self.substr(0, self.find_last_of(L'\\')) + L"\\caller_client.exe\" " + endpoint;
}

/// Where this process listens, from the first time on: it cannot begin twice.
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
  // The work is done; the call of a client that was ended may never count as complete.
  RpcServerUnregisterIf(CallerProbe_v1_0_s_ifspec, nullptr, /*waitForCalls=*/FALSE);
  current = nullptr;
}

void LocalRpcServer::Serve(std::function<void()> work) {
  work_ = std::move(work);
  StartClient();
  EXPECT_EQ(WaitForSingleObject(served_.get(), kLongestCallMilliseconds), WAIT_OBJECT_0)
      << "the client has not called";
  if (client_) WaitForClient();
}

void LocalRpcServer::EndClient() {
  TerminateProcess(client_.get(), 0);
  EXPECT_EQ(WaitForSingleObject(client_.get(), kLongestEndMilliseconds), WAIT_OBJECT_0);
  client_.reset();
  // The system may take a moment to forget a process that nobody holds.
  const ULONGLONG end = GetTickCount64() + kLongestEndMilliseconds;
  while (UniqueHandle(OpenProcess(SYNCHRONIZE, /*inherit=*/FALSE, clientId_))) {
    ASSERT_LT(GetTickCount64(), end) << "somebody holds the client's process";
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
  // Suspended: its call may come at once, and is then asked who the client is.
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
    ADD_FAILURE() << "the client does not end";
    EndClient();
    return;
  }
  DWORD status = 1;
  GetExitCodeProcess(client_.get(), &status);
  EXPECT_EQ(status, 0U) << "of the client";
  client_.reset();
}

RPC_STATUS TellClient(unsigned long& client) {
  return I_RpcBindingInqLocalClientPID(/*binding=*/nullptr, &client);
}

RPC_STATUS RPC_ENTRY AnswerWithTheTrueClient(RPC_BINDING_HANDLE, void* attributes) {
  unsigned long client = 0;
  const RPC_STATUS status = TellClient(client);
  if (status != RPC_S_OK) return status;
  const std::uint64_t wide = client;
  std::memcpy(static_cast<unsigned char*>(attributes) + kClientPidOffset, &wide, sizeof(wide));
  return RPC_S_OK;
}

}  // namespace TestSupport

extern "C" long ServeCall(handle_t) {
  TestSupport::LocalRpcServer::RunWork();
  return 0;
}
