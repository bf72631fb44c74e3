#pragma once

// The export macro of the host's Logging.dll: set by the side that builds that library.
#if defined(GANTRY_LOGGING_EXPORTS)
#define GANTRY_LOGGING_API __declspec(dllexport)
#else
#define GANTRY_LOGGING_API __declspec(dllimport)
#endif

namespace Zq::Gantry::Logging {

/// By-value first argument of the structured log calls. All texts are borrowed for the call.
struct LoggingData {
  const wchar_t* format;     ///< printf-like, wide: %s is wide text, %S is narrow text
  const wchar_t* component;  ///< empty, or the component that speaks
  const void* reserved;      ///< always null
};

/// The process's log. Formats are those of the Windows C library's wide printf family; the logger
/// decides the form of the line. May be called from any thread.
class GANTRY_LOGGING_API TraceLogger {
 public:
  void LogInfo(const wchar_t* format, ...);
  void LogInfo(LoggingData data, ...);
  void LogWarning(const wchar_t* format, ...);
  void LogWarning(LoggingData data, ...);
  void LogError(const wchar_t* format, ...);
  void LogError(LoggingData data, ...);
};

class GANTRY_LOGGING_API LogManager {
 public:
  /// The one logger of the process; owned by Logging.dll, never null.
  static TraceLogger* GetLogger();
};

}  // namespace Zq::Gantry::Logging
