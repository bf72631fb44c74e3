#include "security/facade/zq_authenticode_facade.h"

#include <exception>
#include <utility>

#include "logging/trace_logger.h"
#include "security/access/rpc_security_helper.h"
#include "security/access/tool_launch.h"
#include "security/trust/signer_tables.h"
#include "security/trust/trusted_keys.h"
#include "security/trust/zq_authenticode_helper.h"

namespace Zq::Gantry::Security {

using Helper = ZQAuthenticodeHelper;
using Logging::LogManager;

namespace {

/// Whether the system accepts an embedded signature and one has the signer's common name.
bool IsSignedByDropbox(const wchar_t* path) {
  SignatureList signatures = Helper::GetSignatures(path, /*useCatalog=*/false);
  SignatureList wanted = DropboxSignerRows;
  if (!Helper::IsTrustedByWindows(signatures)) {
    LogManager::GetLogger()->LogError(L"Dropbox file is not trusted by windows.");
    return false;
  }
  // Acceptance by the system alone is not enough. The lists are moved, so that nothing can fail
  // between the two checks.
  return Helper::SubjectsMatch(std::move(signatures), std::move(wanted));
}

}  // namespace

bool ZQAuthenticodeFacade::IsServiceFileTrusted(const wchar_t* path) {
  return Helper::IsFileTrusted(path, &ServiceTrustedKeys) && Helper::IsPathAllowed(path);
}

bool ZQAuthenticodeFacade::IsExtendedFileTrusted(const wchar_t* path) {
  return Helper::IsFileTrusted(path, &ExtendedTrustedKeys) && Helper::IsPathAllowed(path);
}

bool ZQAuthenticodeFacade::IsDropboxFileTrusted(const wchar_t* path) {
  LogManager::GetLogger()->LogInfo(L"Starting validation of Dropbox file.");
  bool trusted = false;
  try {
    trusted = IsSignedByDropbox(path);
  } catch (const std::exception& failure) {
    LogManager::GetLogger()->LogError(L"Problem while validating certificates from Dropbox. %S",
                                      failure.what());
  }
  return trusted && Helper::IsPathAllowed(path);
}

bool ZQAuthenticodeFacade::IsWindowsTrustedFileAllowed(const wchar_t* path) {
  return Helper::IsTrustedByWindows(Helper::GetAllSignatures(path)) && Helper::IsPathAllowed(path);
}

bool ZQAuthenticodeFacade::HaveSameSigningKey(const wchar_t* firstPath, const wchar_t* secondPath) {
  if (firstPath == nullptr || secondPath == nullptr) return false;
  return Helper::PublicKeysMatch(Helper::GetAllSignatures(firstPath),
                                 Helper::GetAllSignatures(secondPath));
}

bool ZQAuthenticodeFacade::IsPathAllowed(const wchar_t* path) {
  return Helper::IsPathAllowed(path);
}

bool ZQAuthenticodeFacade::IsToolLaunchAllowed(const wchar_t* toolPath, bool restricted,
                                               const wchar_t* commandLine,
                                               const wchar_t* component) {
  const auto familyOfCaller = [] { return RpcSecurityHelper().GetPFNOfCaller(); };
  return IsLaunchAllowedBy(ToolLaunchTable, {toolPath, restricted, commandLine, component},
                           familyOfCaller);
}

}  // namespace Zq::Gantry::Security
