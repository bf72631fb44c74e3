// The log of this program's own calls into the library's code: it drops all lines. The library that
// the program loads has the log of Logging.dll. Not imported here, Logging.dll may be missing
// without preventing the program from starting and saying so; and reading a data folder writes
// nothing to the log of the service.

// Defines what the header otherwise declares as imported.
#define GANTRY_LOGGING_EXPORTS
#include "logging/trace_logger.h"

namespace Zq::Gantry::Logging {

void TraceLogger::LogInfo(const wchar_t*, ...) {}
void TraceLogger::LogInfo(LoggingData, ...) {}
void TraceLogger::LogWarning(const wchar_t*, ...) {}
void TraceLogger::LogWarning(LoggingData, ...) {}
void TraceLogger::LogError(const wchar_t*, ...) {}
void TraceLogger::LogError(LoggingData, ...) {}

TraceLogger* LogManager::GetLogger() {
  static TraceLogger logger;
  return &logger;
}

}  // namespace Zq::Gantry::Logging
