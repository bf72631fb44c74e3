#pragma once

#include "logging/trace_logger.h"

// Stand-in for the host's Logging.dll: the part that the real one does not have.
namespace Standin {

enum class LogLevel { kInfo, kWarning, kError };

/// Receives each record in place of the file. `component` is empty if the caller named none. Called
/// under the logger's lock, on the thread that logs.
using LogSink = void (*)(void* context, LogLevel level, const wchar_t* component,
                         const wchar_t* text);

/// Passes all further records to `sink`; null sends them to the file again.
GANTRY_LOGGING_API void SetLogSink(LogSink sink, void* context);

}  // namespace Standin
