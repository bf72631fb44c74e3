#pragma once

// The binary contract with the host's Logging.dll: class layouts and decorated names are fixed. The
// library exports both classes; nothing else of it is used here.

// The export macro: defined for export only by the side that builds Logging.dll.
#if defined(GANTRY_LOGGING_EXPORTS)
#define GANTRY_LOGGING_API __declspec(dllexport)
#else
#define GANTRY_LOGGING_API __declspec(dllimport)
#endif

namespace Zq::Gantry::Logging {

/// First argument of the structured log calls, passed by value. All texts are borrowed for the
/// call.
struct LoggingData {
  const wchar_t* format;     ///< see TraceLogger
  const wchar_t* component;  ///< the component that logs; empty for none
  const void* reserved;      ///< always null
};

/// The log of the process. A format is that of the Windows C library's wide printf family: %s is
/// wide text, %S is narrow text. The arguments must match it; text from outside is never the
/// format. The logger decides the form of the line. Any thread may call these operations, which
/// report no failure.
class GANTRY_LOGGING_API TraceLogger {
 public:
  /// One level after the other, each as a plain and as a structured call.
  void LogInfo(const wchar_t* format, ...);
  void LogInfo(LoggingData data, ...);
  void LogWarning(const wchar_t* format, ...);
  void LogWarning(LoggingData data, ...);
  void LogError(const wchar_t* format, ...);
  void LogError(LoggingData data, ...);
};

/// Where the logger comes from. The host's library is loaded before this one, which imports it, so
/// that the logger exists as long as this library does.
class GANTRY_LOGGING_API LogManager {
 public:
  /// The one logger of the process; owned by Logging.dll, never null.
  [[nodiscard]] static TraceLogger* GetLogger();
};

}  // namespace Zq::Gantry::Logging
