#pragma once

#include <windows.h>

#include <wbemidl.h>

#include "logging/trace_logger.h"
#include "platform/win32/com_owners.h"

// What both classes over WMI share: connecting to a namespace, and one form of warning.
namespace Zq::Gantry::Server::Shared::WMI {

/// Logs the failed calls of one class. Texts and logger are borrowed and must outlive it.
/// `typeName` is the class as it appears in the log; `component` may be empty.
struct FailureLog {
  Logging::TraceLogger* logger;
  const char* typeName;
  const wchar_t* component;

  /// Logs one warning: `call`, made by the member function `function`, failed with `result`.
  void Warn(const char* function, const wchar_t* call, HRESULT result) const;
};

/// The result of a call that must return an object: E_FAIL for a success without one.
[[nodiscard]] inline HRESULT RequireObject(HRESULT result, const void* object) {
  return SUCCEEDED(result) && object == nullptr ? E_FAIL : result;
}

/// The step of connecting that failed: none, CoCreateInstance of the locator,
/// IWbemLocator::ConnectServer, or CoSetProxyBlanket.
enum class ConnectStep { kNone, kLocator, kServer, kBlanket };

/// The outcome of ConnectToNamespace. The service is released on a thread that has joined COM.
struct WmiConnection {
  Platform::UniqueInterface<IWbemServices> service;  ///< null if and only if a step failed
  ConnectStep failedStep = ConnectStep::kNone;
  HRESULT result = S_OK;  ///< of the step that failed
};

/// Connects to a namespace of this machine (IWbemLocator::ConnectServer) and lets the service
/// impersonate this process. The thread must have joined COM. Blocks until WMI answers. A failed
/// step logs one warning that names the member function `function`. So does a failure of
/// CoInitializeSecurity, after which connecting goes on. Throws _com_error if memory for a text
/// runs out.
[[nodiscard]] WmiConnection ConnectToNamespace(const wchar_t* wmiNamespace, const char* function,
                                               const FailureLog& log);

}  // namespace Zq::Gantry::Server::Shared::WMI
