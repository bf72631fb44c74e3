#include "platform/wmi/failure_log.h"

namespace Zq::Gantry::Server::Shared::WMI {

void FailureLog::Warn(const char* function, const wchar_t* call, HRESULT result) const {
  logger->LogWarning(
      Logging::LoggingData{L"%S.%S - failed on function %s with HRESULT 0x%x", component, nullptr},
      typeName, function, call, static_cast<unsigned int>(result));
}

}  // namespace Zq::Gantry::Server::Shared::WMI
