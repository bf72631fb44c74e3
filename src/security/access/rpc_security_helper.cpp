#include "security/access/rpc_security_helper.h"

#include <windows.h>

#include <optional>
#include <system_error>
#include <utility>

#include "logging/trace_logger.h"
#include "platform/win32/owners.h"
#include "platform/win32/rpc_client.h"

namespace Zq::Gantry::Security {

namespace {

using Logging::LogManager;
using Platform::DropInvalid;
using Platform::QueryRpcClient;
using Platform::RpcImpersonation;
using Platform::UniqueHandle;
using ProcessHandles = std::map<std::uint32_t, HANDLE>;

constexpr char kNoClient[] = "RpcServerInqCallAttributes failed";
constexpr char kNoProcess[] = "OpenProcess yielded null or invalid handle";
constexpr char kNoImpersonation[] = "Failed to impersonate client";
constexpr char kNoName[] = "GetPackageFamilyName failed";

/// The status of a failure that has none of its own.
constexpr int kAccessDenied = ERROR_ACCESS_DENIED;

static_assert(PROCESS_QUERY_LIMITED_INFORMATION == 0x1000 && kAccessDenied == 5 &&
              ERROR_INSUFFICIENT_BUFFER == 122);

void ThrowIfFailed(LONG status, const char* what) {
  if (status != 0) throw std::system_error(static_cast<int>(status), std::generic_category(), what);
}

/// A copy of the host's handle to a client whose process cannot be opened; empty without one.
UniqueHandle DuplicateKnown(const ProcessHandles& known, DWORD client) {
  UniqueHandle copy;
  const auto entry = known.find(client);
  if (entry == known.end()) return copy;
  // Kept on purpose: a pseudo-handle in the map names this process itself (test
  // GetPFNOfCaller.DuplicatesAPseudoHandleOfTheHost).
  if (!DuplicateHandle(GetCurrentProcess(), entry->second, GetCurrentProcess(), copy.out(),
                       PROCESS_QUERY_LIMITED_INFORMATION, /*inherit=*/FALSE, /*options=*/0)) {
    static_cast<void>(copy.release());
  }
  DropInvalid(copy);
  return copy;
}

UniqueHandle OpenClientProcess(const ProcessHandles& known) {
  // Kept on purpose: if the second query fails, the client is the process 0 (test
  // GetPFNOfCaller.OpensProcessZeroWhenTheSecondQueryFails).
  const DWORD client = QueryRpcClient().processId;
  UniqueHandle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, /*inherit=*/FALSE, client));
  DropInvalid(process);
  return process ? std::move(process) : DuplicateKnown(known, client);
}

/// Throws the status of a failure, and the plain integer 5 if the name cannot be read although its
/// length could.
std::wstring ReadFamilyName(HANDLE process) {
  UINT32 chars = 0;
  const LONG status = GetPackageFamilyName(process, &chars, nullptr);
  if (status != ERROR_INSUFFICIENT_BUFFER) ThrowIfFailed(status, kNoName);
  std::wstring name(chars, L'\0');
  if (GetPackageFamilyName(process, &chars, name.data()) != 0) throw int{kAccessDenied};
  std::erase(name, L'\0');  // the length counts the terminator
  return name;
}

void LogFailure(const char* what, int status) {
  LogManager::GetLogger()->LogError(L"RpcSecurityHelper::GetPFNOfCaller - %S, Status: %ld", what,
                                    static_cast<long>(status));
}

}  // namespace

RpcSecurityHelper::RpcSecurityHelper() = default;
RpcSecurityHelper::~RpcSecurityHelper() = default;

std::wstring RpcSecurityHelper::GetPFNOfCaller() const {
  // Destroyed in reverse order, after a failure is logged: the process is closed, then the thread
  // reverts. The process is opened as the service, its name is queried as the client.
  std::optional<RpcImpersonation> impersonation;
  UniqueHandle process;
  try {
    ThrowIfFailed(QueryRpcClient().status, kNoClient);
    process = OpenClientProcess(ClientProcessHandles);
    if (!process) ThrowIfFailed(kAccessDenied, kNoProcess);
    impersonation.emplace();
    ThrowIfFailed(impersonation->Status(), kNoImpersonation);
    return ReadFamilyName(process.get());
  } catch (const std::system_error& failure) {
    LogFailure(failure.what(), failure.code().value());
  } catch (int failure) {
    LogManager::GetLogger()->LogError(L"RpcSecurityHelper::GetPFNOfCaller - Caught error %ld",
                                      static_cast<long>(failure));
  } catch (...) {
    // Only lack of memory gets here; its exception has no status.
    LogFailure("Unknown exception", ERROR_NOT_ENOUGH_MEMORY);
  }
  return {};
}

}  // namespace Zq::Gantry::Security
