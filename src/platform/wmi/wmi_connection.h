#pragma once

#include <windows.h>

#include <wbemidl.h>

#include "platform/win32/com_owners.h"
#include "platform/wmi/failure_log.h"

namespace Zq::Gantry::Server::Shared::WMI {

enum class ConnectStep { kNone, kLocator, kServer, kBlanket };

struct WmiConnection {
  Platform::UniqueInterface<IWbemServices> service;  ///< null exactly where a step failed
  ConnectStep failedStep = ConnectStep::kNone;
  HRESULT result = S_OK;  ///< of the step that failed
};

/// Connects to a namespace of this machine; the thread has joined COM before. Failures are logged
/// as those of the member function `function`.
[[nodiscard]] WmiConnection ConnectToNamespace(const wchar_t* wmiNamespace, const char* function,
                                               const FailureLog& log);

}  // namespace Zq::Gantry::Server::Shared::WMI
