#include <windows.h>

#include <gmock/gmock.h>

#include "import_patch.h"
#include "local_rpc_server.h"
#include "security/trust/util_helper.h"
#include "support/log_capture.h"

// Expansion of a path on a thread that serves a real remote procedure call. The expansion itself is
// fake: not every system that the tests run on has variables for each user.
namespace Zq::Gantry::Server::Services {
namespace {

bool gotToken = false;

BOOL WINAPI ExpandForUser(HANDLE token, LPCWSTR text, LPWSTR result, DWORD chars) {
  TOKEN_STATISTICS statistics{};
  DWORD bytes = 0;
  gotToken = GetTokenInformation(token, TokenStatistics, &statistics, sizeof(statistics), &bytes) &&
             statistics.TokenType == TokenPrimary;
  wcscpy_s(result, chars, std::wstring(L"%PLACE%\\a.exe") == text ? L"C:\\Client\\a.exe" : L"");
  return TRUE;
}

TEST(ServedPath, IsExpandedForTheClientOnTheServingThreadOnly) {
  const Standin::ImportPatch attributes("RpcServerInqCallAttributesW",
                                        &TestSupport::AnswerWithTheTrueClient);
  const Standin::ImportPatch forUser("ExpandEnvironmentStringsForUserW", &ExpandForUser);
  const TestSupport::LogCapture log;
  TestSupport::LocalRpcServer server;
  const auto expand = [] { return UtilHelper::GetFullExpandedPath(L"%PLACE%\\a.exe", L""); };
  std::wstring served;
  server.Serve([&] { served = expand(); });
  EXPECT_EQ(served, L"C:\\Client\\a.exe");
  EXPECT_TRUE(gotToken);
  EXPECT_THAT(expand(), testing::EndsWith(L"\\%PLACE%\\a.exe")) << "on any other thread";
}

}  // namespace
}  // namespace Zq::Gantry::Server::Services
