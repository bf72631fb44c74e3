#pragma once

#include <windows.h>

#include "logging/trace_logger.h"

namespace Zq::Gantry::Server::Shared::WMI {

/// Who speaks in the warnings of the WMI classes. All texts are borrowed.
struct FailureLog {
  Logging::TraceLogger* logger;
  const char* typeName;
  const wchar_t* component;

  /// One warning: the failed call `call`, made by the member function `function`.
  void Warn(const char* function, const wchar_t* call, HRESULT result) const;
};

}  // namespace Zq::Gantry::Server::Shared::WMI
