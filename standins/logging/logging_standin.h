#pragma once

#include "logging/trace_logger.h"

// Stand-in for the host's Logging.dll: what only the stand-in offers.
namespace Standin {

enum class LogLevel { kInfo, kWarning, kError };

/// Gets each record in place of the file. `component` is empty where the caller named none. Called
/// under the logger's lock, on the thread that logs.
using LogSink = void (*)(void* context, LogLevel level, const wchar_t* component,
                         const wchar_t* text);

/// Hands all further records to `sink`; null sends them to the file again.
GANTRY_LOGGING_API void SetLogSink(LogSink sink, void* context);

}  // namespace Standin
