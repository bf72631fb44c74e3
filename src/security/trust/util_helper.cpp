#include "security/trust/util_helper.h"

#include <windows.h>

#include <userenv.h>

#include <array>
#include <cwchar>

#include "logging/trace_logger.h"
#include "platform/win32/owners.h"
#include "platform/win32/rpc_client.h"
#include "security/trust/path_rules.h"

namespace Zq::Gantry::Server::Services {

namespace {

using Logging::LoggingData;
using Logging::LogManager;
using Platform::DropInvalid;
using Platform::UniqueHandle;

/// The size that each call gets for its text, terminator included.
constexpr DWORD kPathChars = 260;
/// One character more, so that the text is terminated even if a call writes no terminator.
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
    // A text that does not fit is cut and reported as a success, and a cut path could pass for one
    // below a root.
    expanded.fill(L'\0');
    WarnOfFailure(component, L"ExpandEnvironmentStrings", error);
    return;
  }
  LogManager::GetLogger()->LogInfo(
      LoggingData{L"ExpandEnvironmentStrings: [%s] [%s]", component, nullptr}, filePath,
      expanded.data());
}

/// Whether a text that fills the buffer is only the beginning of a longer one: the call cuts a text
/// without reporting the length that it needed.
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
  // Kept on purpose: the handle decides whether there is a token, not the call's result (test
  // GetFullExpandedPathForClient.UsesATokenThatAFailedCallReturned).
  OpenProcessToken(process.get(), TOKEN_ALL_ACCESS, token.out());
  DropInvalid(token);
  if (token) ExpandForToken(token.get(), filePath, expanded, component);
}

}  // namespace

bool UtilHelper::BeginsWith(const std::wstring& text, const std::wstring& prefix) {
  return Security::HasPrefix(text, prefix);
}

bool UtilHelper::NullChecker(std::vector<NamedArgument>& arguments, const wchar_t* component) {
  bool found = false;
  for (const auto& [pointer, name] : arguments) {
    if (pointer != nullptr) continue;
    found = true;
    Logging::LogManager::GetLogger()->LogWarning(
        Logging::LoggingData{L"%S.%S - %S cannot be null", component, nullptr},
        "class Zq::Gantry::Server::Services::UtilHelper", "NullChecker", name.c_str());
  }
  arguments.clear();
  return found;
}

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
