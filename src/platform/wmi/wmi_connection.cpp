#include "platform/wmi/wmi_connection.h"

namespace Zq::Gantry::Server::Shared::WMI {

namespace {

using Platform::UniqueBstr;
using Platform::UniqueInterface;

/// Applies to the whole process. RPC_E_TOO_LATE is the normal result: the host or an earlier
/// connection has called it already.
void InitializeSecurity(const char* function, const FailureLog& log) {
  const HRESULT result = CoInitializeSecurity(
      /*securityDescriptor=*/nullptr, /*services=*/-1, nullptr, /*reserved=*/nullptr,
      RPC_C_AUTHN_LEVEL_DEFAULT, RPC_C_IMP_LEVEL_IMPERSONATE, nullptr, EOAC_NONE,
      /*reserved=*/nullptr);
  if (FAILED(result) && result != RPC_E_TOO_LATE) {
    log.Warn(function, L"CoInitializeSecurity", result);
  }
}

HRESULT CreateLocator(UniqueInterface<IWbemLocator>& locator) {
  const HRESULT result =
      CoCreateInstance(CLSID_WbemLocator, /*outer=*/nullptr, CLSCTX_INPROC_SERVER, IID_IWbemLocator,
                       reinterpret_cast<void**>(locator.out()));
  return RequireObject(result, locator.get());
}

HRESULT ConnectServer(IWbemLocator* locator, const wchar_t* wmiNamespace,
                      UniqueInterface<IWbemServices>& service) {
  const UniqueBstr name = Platform::MakeBstr(wmiNamespace);
  const HRESULT result = locator->ConnectServer(
      name.get(), /*user=*/nullptr, /*password=*/nullptr, /*locale=*/nullptr,
      /*flags=*/0, /*authority=*/nullptr, /*context=*/nullptr, service.out());
  return RequireObject(result, service.get());
}

HRESULT SetBlanket(IWbemServices* service) {
  return CoSetProxyBlanket(service, RPC_C_AUTHN_WINNT, RPC_C_AUTHZ_NONE, /*principal=*/nullptr,
                           RPC_C_AUTHN_LEVEL_CALL, RPC_C_IMP_LEVEL_IMPERSONATE,
                           /*identity=*/nullptr, EOAC_NONE);
}

}  // namespace

void FailureLog::Warn(const char* function, const wchar_t* call, HRESULT result) const {
  logger->LogWarning(
      Logging::LoggingData{L"%S.%S - failed on function %s with HRESULT 0x%x", component, nullptr},
      typeName, function, call, static_cast<unsigned int>(result));
}

WmiConnection ConnectToNamespace(const wchar_t* wmiNamespace, const char* function,
                                 const FailureLog& log) {
  const auto fail = [&](ConnectStep step, const wchar_t* call, HRESULT result) {
    log.Warn(function, call, result);
    return WmiConnection{{}, step, result};
  };
  InitializeSecurity(function, log);

  UniqueInterface<IWbemLocator> locator;
  HRESULT result = CreateLocator(locator);
  if (FAILED(result)) return fail(ConnectStep::kLocator, L"CoCreateInstance", result);

  WmiConnection connection;
  result = ConnectServer(locator.get(), wmiNamespace, connection.service);
  locator.reset();
  if (FAILED(result)) {
    return fail(ConnectStep::kServer, L"IWbemLocator->ConnectServer(WmiNamespace)", result);
  }

  result = SetBlanket(connection.service.get());
  if (FAILED(result)) return fail(ConnectStep::kBlanket, L"CoSetProxyBlanket", result);
  return connection;
}

}  // namespace Zq::Gantry::Server::Shared::WMI
