// The log of this program's own calls into the library's code: it drops all lines, unless an object
// keeps its warnings (own_log.h). The library that the program loads has the log of Logging.dll.
// Not imported here, Logging.dll may be missing without preventing the program from starting and
// saying so; and reading a data folder writes nothing to the log of the service.

#include "log/own_log.h"

#include <array>
#include <cstdarg>
#include <cwchar>
#include <utility>

#include "base/utf8_text.h"

// Defines what the header otherwise declares as imported.
#define GANTRY_LOGGING_EXPORTS
#include "logging/trace_logger.h"

namespace WattleafHost {

namespace {

OwnLogLines* keeper = nullptr;

/// The formats are those of the Windows C library. A longer line is cut.
void Keep(const wchar_t* format, va_list arguments) {
  if (keeper == nullptr) return;
  std::array<wchar_t, 1024> buffer{};
  _vsnwprintf(buffer.data(), buffer.size() - 1, format, arguments);
  std::wstring line = buffer.data();
  while (!line.empty() && line.back() == L'\n') line.pop_back();
  keeper->Add(Zq::Gantry::Server::Services::Wattleaf::ToUtf8(line));
}

}  // namespace

OwnLogLines::OwnLogLines() { keeper = this; }
OwnLogLines::~OwnLogLines() { keeper = nullptr; }

}  // namespace WattleafHost

namespace Zq::Gantry::Logging {

void TraceLogger::LogInfo(const wchar_t*, ...) {}
void TraceLogger::LogInfo(LoggingData, ...) {}

void TraceLogger::LogWarning(const wchar_t* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  WattleafHost::Keep(format, arguments);
  va_end(arguments);
}

void TraceLogger::LogWarning(LoggingData data, ...) {
  va_list arguments;
  va_start(arguments, data);
  WattleafHost::Keep(data.format, arguments);
  va_end(arguments);
}

void TraceLogger::LogError(const wchar_t* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  WattleafHost::Keep(format, arguments);
  va_end(arguments);
}

void TraceLogger::LogError(LoggingData data, ...) {
  va_list arguments;
  va_start(arguments, data);
  WattleafHost::Keep(data.format, arguments);
  va_end(arguments);
}

TraceLogger* LogManager::GetLogger() {
  static TraceLogger logger;
  return &logger;
}

}  // namespace Zq::Gantry::Logging
