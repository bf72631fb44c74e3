#include "security/access/rpc_security_helper.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <rpc.h>

#include <cstring>

#include "import_patch.h"
#include "local_rpc_server.h"
#include "platform/win32/owners.h"
#include "platform/win32/rpc_client.h"
#include "security/trust/util_helper.h"
#include "support/call_attributes.h"
#include "support/log_capture.h"

// The caller of a real remote procedure call, identified on the thread that serves it. Two system
// calls are faked: the attributes of the call, which not every system that the tests run on
// implements, and the name of the package if a test needs a packaged client.
namespace Zq::Gantry::Security {
namespace {

using Platform::UniqueHandle;
using Standin::ImportPatch;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::StartsWith;
using TestSupport::AnswerWithRealClient;
using TestSupport::LocalRpcServer;
using TestSupport::LogCapture;
using TestSupport::LogRecord;
using TestSupport::QueryServedClient;

constexpr wchar_t kName[] = L"Some.App_q7m3xk2tdw9pa";

/// Whether the calling thread impersonates.
bool IsImpersonating() {
  UniqueHandle token;
  return OpenThreadToken(GetCurrentThread(), TOKEN_QUERY, /*openAsSelf=*/TRUE, token.out()) != 0;
}

/// What was recorded while the thread served the call.
struct Seen {
  std::wstring name = L"not called";
  bool impersonatesAfterwards = true;
  std::vector<std::string> order;
  std::vector<DWORD> queriedProcesses;  // ids, by the handles passed to the name queries
  HANDLE opened = nullptr;
};

Seen* seen = nullptr;

/// Reports a package name in the way of GetPackageFamilyName.
LONG WINAPI NamePackagedClient(HANDLE process, UINT32* length, wchar_t* name) {
  seen->order.push_back(IsImpersonating() ? "name as the client" : "name as the service");
  seen->queriedProcesses.push_back(GetProcessId(process));
  const bool fits = *length >= std::size(kName);
  *length = static_cast<UINT32>(std::size(kName));
  if (!fits) return ERROR_INSUFFICIENT_BUFFER;
  std::memcpy(name, kName, sizeof(kName));
  return ERROR_SUCCESS;
}

class GetPFNOfCallerOverRpc : public testing::Test {
 protected:
  GetPFNOfCallerOverRpc() { seen = &seen_; }
  ~GetPFNOfCallerOverRpc() override { seen = nullptr; }

  /// Starts a client and identifies it on the thread that serves its call.
  void IdentifyWhileServing() {
    server_.Serve([this] { Identify(); });
  }

  void Identify() {
    seen_.name = helper_.GetPFNOfCaller();
    seen_.impersonatesAfterwards = IsImpersonating();
  }

  void ExpectFailure(const std::wstring& text, const std::wstring& status) {
    const std::vector<LogRecord> records = log_.Records();
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0].level, Standin::LogLevel::kError);
    EXPECT_THAT(records[0].text, StartsWith(L"RpcSecurityHelper::GetPFNOfCaller - " + text));
    EXPECT_THAT(records[0].text, EndsWith(L", Status: " + status));
  }

  Seen seen_;
  RpcSecurityHelper helper_;
  LocalRpcServer server_;
  LogCapture log_;
  ImportPatch attributes_{"RpcServerInqCallAttributesW", &AnswerWithRealClient};
};

TEST_F(GetPFNOfCallerOverRpc, NamesTheClientOnTheServingThread) {
  const ImportPatch name("GetPackageFamilyName", &NamePackagedClient);
  IdentifyWhileServing();
  EXPECT_EQ(seen_.name, kName);
  EXPECT_THAT(seen_.queriedProcesses, ElementsAre(server_.ClientId(), server_.ClientId()));
  EXPECT_THAT(log_.Records(), IsEmpty());
}

TEST_F(GetPFNOfCallerOverRpc, ImpersonatesTheClientOnlyDuringTheNameQueries) {
  const ImportPatch name("GetPackageFamilyName", &NamePackagedClient);
  IdentifyWhileServing();
  EXPECT_THAT(seen_.order, ElementsAre("name as the client", "name as the client"));
  EXPECT_FALSE(seen_.impersonatesAfterwards);
}

TEST_F(GetPFNOfCallerOverRpc, IsEmptyForADesktopProgram) {
  IdentifyWhileServing();
  EXPECT_EQ(seen_.name, L"");
  ExpectFailure(L"GetPackageFamilyName failed", L"15700");
  EXPECT_FALSE(seen_.impersonatesAfterwards) << "after a failure";
}

TEST_F(GetPFNOfCallerOverRpc, IsEmptyForAClientThatHasEnded) {
  server_.Serve([this] {
    unsigned long client = 0;
    ASSERT_EQ(QueryServedClient(client), RPC_S_OK);
    server_.EndClient();
    static unsigned long endedClient = 0;
    endedClient = client;
    const ImportPatch attributes(
        "RpcServerInqCallAttributesW", +[](RPC_BINDING_HANDLE, void* into) -> RPC_STATUS {
          TestSupport::WriteClientId(into, endedClient);
          return RPC_S_OK;
        });
    Identify();
  });
  EXPECT_EQ(seen_.name, L"");
  ExpectFailure(L"OpenProcess yielded null or invalid handle", L"5");
}

TEST_F(GetPFNOfCallerOverRpc, UsesTheHostsHandleWhenTheProcessCannotBeOpened) {
  const ImportPatch name("GetPackageFamilyName", &NamePackagedClient);
  const ImportPatch open(
      "OpenProcess", +[](DWORD, BOOL, DWORD) -> HANDLE {
        SetLastError(ERROR_ACCESS_DENIED);
        return nullptr;
      });
  server_.Serve([this] {
    helper_.ClientProcessHandles[server_.ClientId()] = server_.ClientProcess();
    Identify();
  });
  EXPECT_EQ(seen_.name, kName);
  EXPECT_THAT(seen_.queriedProcesses, ElementsAre(server_.ClientId(), server_.ClientId()));
}

TEST_F(GetPFNOfCallerOverRpc, IsEmptyOnAThreadThatServesNoCall) {
  Identify();
  EXPECT_EQ(seen_.name, L"");
  ExpectFailure(L"RpcServerInqCallAttributes failed", L"1725");
}

// Fakes that record a call and pass it on to the system.

HANDLE(WINAPI* realOpen)(DWORD, BOOL, DWORD);
BOOL(WINAPI* realClose)(HANDLE);
RPC_STATUS(RPC_ENTRY* realImpersonate)(RPC_BINDING_HANDLE);
RPC_STATUS(RPC_ENTRY* realRevert)();
LONG(WINAPI* realName)(HANDLE, UINT32*, PWSTR);

HANDLE WINAPI WatchOpen(DWORD access, BOOL inherit, DWORD client) {
  seen->order.push_back(IsImpersonating() ? "open as the client" : "open as the service");
  return seen->opened = realOpen(access, inherit, client);
}

BOOL WINAPI WatchClose(HANDLE handle) {
  if (handle == seen->opened) seen->order.push_back("close");
  return realClose(handle);
}

RPC_STATUS RPC_ENTRY WatchImpersonate(RPC_BINDING_HANDLE binding) {
  seen->order.push_back("impersonate");
  return realImpersonate(binding);
}

RPC_STATUS RPC_ENTRY WatchRevert() {
  seen->order.push_back("revert");
  return realRevert();
}

LONG WINAPI WatchName(HANDLE process, UINT32* length, wchar_t* name) {
  seen->order.push_back("name");
  return realName(process, length, name);
}

TEST_F(GetPFNOfCallerOverRpc, OpensImpersonatesQueriesClosesAndReverts) {
  const ImportPatch open("OpenProcess", &WatchOpen);
  const ImportPatch close("CloseHandle", &WatchClose);
  const ImportPatch impersonate("RpcImpersonateClient", &WatchImpersonate);
  const ImportPatch revert("RpcRevertToSelf", &WatchRevert);
  const ImportPatch name("GetPackageFamilyName", &WatchName);
  realOpen = open.Original<HANDLE WINAPI(DWORD, BOOL, DWORD)>();
  realClose = close.Original<BOOL WINAPI(HANDLE)>();
  realImpersonate = impersonate.Original<RPC_STATUS RPC_ENTRY(RPC_BINDING_HANDLE)>();
  realRevert = revert.Original<RPC_STATUS RPC_ENTRY()>();
  realName = name.Original<LONG WINAPI(HANDLE, UINT32*, PWSTR)>();
  IdentifyWhileServing();
  EXPECT_THAT(seen_.order,
              ElementsAre("open as the service", "impersonate", "name", "close", "revert"));
}

// Expands a path for the client. The expansion itself is faked, since not every system that the
// tests run on has variables for each user.

bool gotToken = false;

BOOL WINAPI ExpandForUser(HANDLE token, LPCWSTR text, LPWSTR result, DWORD chars) {
  TOKEN_STATISTICS statistics{};
  DWORD bytes = 0;
  gotToken = GetTokenInformation(token, TokenStatistics, &statistics, sizeof(statistics), &bytes) &&
             statistics.TokenType == TokenPrimary;
  wcscpy_s(result, chars, std::wstring(L"%PLACE%\\a.exe") == text ? L"C:\\Client\\a.exe" : L"");
  return TRUE;
}

TEST(GetFullExpandedPathOverRpc, ExpandsForTheClientOnTheServingThreadOnly) {
  const ImportPatch attributes("RpcServerInqCallAttributesW", &AnswerWithRealClient);
  const ImportPatch forUser("ExpandEnvironmentStringsForUserW", &ExpandForUser);
  const LogCapture log;
  LocalRpcServer server;
  const auto expand = [] {
    return Server::Services::UtilHelper::GetFullExpandedPath(L"%PLACE%\\a.exe", L"");
  };
  std::wstring served;
  server.Serve([&] { served = expand(); });
  EXPECT_EQ(served, L"C:\\Client\\a.exe");
  EXPECT_TRUE(gotToken);
  EXPECT_THAT(expand(), EndsWith(L"\\%PLACE%\\a.exe")) << "on a thread that serves no call";
}

}  // namespace
}  // namespace Zq::Gantry::Security
