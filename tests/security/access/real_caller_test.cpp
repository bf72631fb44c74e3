#include "security/access/rpc_security_helper.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <rpc.h>

#include <cstdint>
#include <cstring>

#include "import_patch.h"
#include "local_rpc_server.h"
#include "platform/win32/owners.h"
#include "platform/win32/rpc_client.h"
#include "security/trust/util_helper.h"
#include "support/log_capture.h"

// The caller of a real remote procedure call, asked for on the thread that serves it. Two calls are
// fake: the attributes of the call, which not every system that the tests run on has, with the
// client that the runtime really has; and the name, where the client shall be a packaged one.
namespace Zq::Gantry::Security {
namespace {

using Platform::UniqueHandle;
using Standin::ImportPatch;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::StartsWith;
using TestSupport::AnswerWithTheTrueClient;
using TestSupport::LocalRpcServer;
using TestSupport::LogCapture;
using TestSupport::LogRecord;
using TestSupport::TellClient;

constexpr wchar_t kName[] = L"Some.App_q7m3xk2tdw9pa";
constexpr std::size_t kClientPidOffset = 64;

/// Whether the calling thread acts as somebody else.
bool ActsAsAnother() {
  UniqueHandle token;
  return OpenThreadToken(GetCurrentThread(), TOKEN_QUERY, /*openAsSelf=*/TRUE, token.out()) != 0;
}

/// What was seen while the thread served the call.
struct Seen {
  std::wstring name = L"not asked";
  bool actsAsAnotherAfterwards = true;
  std::vector<std::string> order;
  std::vector<DWORD> askedAbout;  // process ids, by the handles of the name queries
  HANDLE opened = nullptr;
};

Seen* seen = nullptr;

/// The name of the packaged client, as the system gives it.
LONG WINAPI NamePackagedClient(HANDLE process, UINT32* length, wchar_t* name) {
  seen->order.push_back(ActsAsAnother() ? "ask as the client" : "ask as the service");
  seen->askedAbout.push_back(GetProcessId(process));
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

  /// Has a client call, and asks who it is.
  void AskWhileServing() {
    server_.Serve([this] { Ask(); });
  }

  void Ask() {
    seen_.name = helper_.GetPFNOfCaller();
    seen_.actsAsAnotherAfterwards = ActsAsAnother();
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
  ImportPatch attributes_{"RpcServerInqCallAttributesW", &AnswerWithTheTrueClient};
};

TEST_F(GetPFNOfCallerOverRpc, NamesTheClientOnTheServingThread) {
  const ImportPatch name("GetPackageFamilyName", &NamePackagedClient);
  AskWhileServing();
  EXPECT_EQ(seen_.name, kName);
  EXPECT_THAT(seen_.askedAbout, ElementsAre(server_.ClientId(), server_.ClientId()));
  EXPECT_THAT(log_.Records(), IsEmpty());
}

TEST_F(GetPFNOfCallerOverRpc, ImpersonatesTheClientOnlyDuringTheNameQueries) {
  const ImportPatch name("GetPackageFamilyName", &NamePackagedClient);
  AskWhileServing();
  EXPECT_THAT(seen_.order, ElementsAre("ask as the client", "ask as the client"));
  EXPECT_FALSE(seen_.actsAsAnotherAfterwards);
}

TEST_F(GetPFNOfCallerOverRpc, IsEmptyForADesktopProgram) {
  AskWhileServing();
  EXPECT_EQ(seen_.name, L"");
  ExpectFailure(L"GetPackageFamilyName failed", L"15700");
  EXPECT_FALSE(seen_.actsAsAnotherAfterwards) << "reverted after a failure, too";
}

TEST_F(GetPFNOfCallerOverRpc, IsEmptyForAClientThatHasEnded) {
  server_.Serve([this] {
    unsigned long client = 0;
    ASSERT_EQ(TellClient(client), RPC_S_OK);
    server_.EndClient();
    static unsigned long told = 0;
    told = client;
    const ImportPatch attributes(
        "RpcServerInqCallAttributesW", +[](RPC_BINDING_HANDLE, void* into) -> RPC_STATUS {
          const std::uint64_t wide = told;
          std::memcpy(static_cast<unsigned char*>(into) + kClientPidOffset, &wide, sizeof(wide));
          return RPC_S_OK;
        });
    Ask();
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
    Ask();
  });
  EXPECT_EQ(seen_.name, kName);
  EXPECT_THAT(seen_.askedAbout, ElementsAre(server_.ClientId(), server_.ClientId()));
}

TEST_F(GetPFNOfCallerOverRpc, IsEmptyOnAThreadThatServesNoCall) {
  Ask();
  EXPECT_EQ(seen_.name, L"");
  ExpectFailure(L"RpcServerInqCallAttributes failed", L"1725");
}

// The system's own calls, written down as they pass.

HANDLE(WINAPI* realOpen)(DWORD, BOOL, DWORD);
BOOL(WINAPI* realClose)(HANDLE);
RPC_STATUS(RPC_ENTRY* realImpersonate)(RPC_BINDING_HANDLE);
RPC_STATUS(RPC_ENTRY* realRevert)();
LONG(WINAPI* realName)(HANDLE, UINT32*, PWSTR);

HANDLE WINAPI WatchOpen(DWORD access, BOOL inherit, DWORD client) {
  seen->order.push_back(ActsAsAnother() ? "open as the client" : "open as the service");
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
  seen->order.push_back("ask");
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
  AskWhileServing();
  EXPECT_THAT(seen_.order,
              ElementsAre("open as the service", "impersonate", "ask", "close", "revert"));
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
  const ImportPatch attributes("RpcServerInqCallAttributesW", &AnswerWithTheTrueClient);
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
  EXPECT_THAT(expand(), EndsWith(L"\\%PLACE%\\a.exe")) << "on any other thread";
}

}  // namespace
}  // namespace Zq::Gantry::Security
