#include <windows.h>

#include <userenv.h>

#include <array>
#include <cwchar>

#include "logging/trace_logger.h"
#include "platform/win32/owners.h"
#include "platform/win32/rpc_client.h"
#include "security/trust/util_helper.h"

namespace Zq::Gantry::Server::Services {

namespace {

using Logging::LoggingData;
using Logging::LogManager;
using Platform::DropInvalid;
using Platform::UniqueHandle;

/// What each call is told that it may fill, terminator included.
constexpr DWORD kPathChars = 260;
/// One more than the calls are told: the text ends inside whatever they leave.
using PathBuffer = std::array<wchar_t, kPathChars + 1>;

static_assert(PROCESS_ALL_ACCESS == 0x1FFFFF && TOKEN_ALL_ACCESS == 0xF01FF);

void WarnOfFailure(const wchar_t* component, const wchar_t* function, DWORD error) {
  LogManager::GetLogger()->LogWarning(
      LoggingData{L"%S.%S failed on function %s with result %d", component, nullptr},
      "class Zq::Gantry::Server::Services::UtilHelper", "GetFullExpandedPath", function,
      static_cast<int>(error));
}

void ExpandForProcess(const wchar_t* filePath, PathBuffer& expanded, const wchar_t* component) {
  const DWORD chars = ExpandEnvironmentStringsW(filePath, expanded.data(), kPathChars);
  const DWORD error = GetLastError();
  if (chars == 0 || chars > kPathChars) {
    // A text that does not fit comes back cut and reported as a success: a cut path could pass for
    // one below a root.
    expanded.fill(L'\0');
    WarnOfFailure(component, L"ExpandEnvironmentStrings", error);
    return;
  }
  LogManager::GetLogger()->LogInfo(
      LoggingData{L"ExpandEnvironmentStrings: [%s] [%s]", component, nullptr}, filePath,
      expanded.data());
}

/// Whether a text that fills the buffer is only the beginning of a longer one: the call cuts, and
/// does not tell the length that it needed.
bool WasCut(HANDLE token, const wchar_t* filePath, const PathBuffer& expanded) {
  if (wcsnlen(expanded.data(), kPathChars) < kPathChars - 1) return false;
  std::array<wchar_t, kPathChars + 2> wider{};
  if (!ExpandEnvironmentStringsForUserW(token, filePath, wider.data(), kPathChars + 1)) return true;
  return wcsnlen(wider.data(), kPathChars) == kPathChars;
}

void ExpandForToken(HANDLE token, const wchar_t* filePath, PathBuffer& expanded,
                    const wchar_t* component) {
  const BOOL done = ExpandEnvironmentStringsForUserW(token, filePath, expanded.data(), kPathChars);
  const DWORD error = GetLastError();
  if (done && !WasCut(token, filePath, expanded)) return;
  expanded.fill(L'\0');
  WarnOfFailure(component, L"ExpandEnvironmentStringsForUser", error);
}

void ExpandForClient(DWORD client, const wchar_t* filePath, PathBuffer& expanded,
                     const wchar_t* component) {
  UniqueHandle process(OpenProcess(PROCESS_ALL_ACCESS, /*inherit=*/FALSE, client));
  const DWORD error = GetLastError();
  DropInvalid(process);
  if (!process) {
    WarnOfFailure(component, L"process_handle is NULL or INVALID_HANDLE_VALUE", error);
    return;
  }
  UniqueHandle token;
  // Kept on purpose: only the handle that the call leaves tells whether there is a token (test
  // GetFullExpandedPathForClient.UsesATokenThatAFailedCallReturned).
  OpenProcessToken(process.get(), TOKEN_ALL_ACCESS, token.out());
  DropInvalid(token);
  if (token) ExpandForToken(token.get(), filePath, expanded, component);
}

}  // namespace

std::wstring UtilHelper::GetFullExpandedPath(const wchar_t* filePath, const wchar_t* component) {
  std::vector<NamedArgument> arguments{{filePath, "filePath"}};
  if (NullChecker(arguments, component)) return {};

  PathBuffer expanded{};
  const Platform::RpcClient client = Platform::QueryRpcClient();
  if (client.status == RPC_S_OK) {
    ExpandForClient(client.processId, filePath, expanded, component);
  } else {
    ExpandForProcess(filePath, expanded, component);
  }

  PathBuffer full{};
  const DWORD chars = GetFullPathNameW(expanded.data(), kPathChars, full.data(), nullptr);
  const DWORD error = GetLastError();
  if (chars == 0 || chars >= kPathChars) {
    WarnOfFailure(component, L"GetFullPathName", error);
    return {};
  }
  LogManager::GetLogger()->LogInfo(LoggingData{L"GetFullPathName: [%s]", component, nullptr},
                                   full.data());
  return full.data();
}

}  // namespace Zq::Gantry::Server::Services
