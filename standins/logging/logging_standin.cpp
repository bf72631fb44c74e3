// Stand-in for the host's closed Logging.dll. Each record is one line of UTF-8 text, "[level]
// [component] text" with line breaks written as \n. It is appended to the file that the environment
// variable WATTLEAF_LOG_FILE names, or written to standard error.

#include "logging_standin.h"

#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <string>

#include "base/utf8_text.h"
#include "base/wide_file.h"
#include "logging/trace_logger.h"

namespace {

using Zq::Gantry::Server::Services::Wattleaf::ToUtf8;
using Zq::Gantry::Server::Services::Wattleaf::UniqueFile;

struct Sink {
  Standin::LogSink call = nullptr;
  void* context = nullptr;
};

std::mutex& Lock() {
  static std::mutex lock;
  return lock;
}

Sink& CurrentSink() {
  static Sink sink;
  return sink;
}

std::wstring Print(const wchar_t* format, va_list arguments) {
  std::wstring buffer(256, L'\0');
  for (;;) {
    va_list copy;
    va_copy(copy, arguments);
    const int printed = _vsnwprintf(buffer.data(), buffer.size(), format, copy);
    va_end(copy);
    if (printed >= 0) {
      buffer.resize(static_cast<std::size_t>(printed));
      return buffer;
    }
    if (buffer.size() >= 1024 * 1024) return buffer;
    buffer.assign(buffer.size() * 4, L'\0');
  }
}

void WriteLine(Standin::LogLevel level, const std::wstring& component, const std::wstring& text) {
  static constexpr const char* kLevels[] = {"info", "warning", "error"};
  std::string line = "[";
  line.append(kLevels[static_cast<int>(level)]).append("] [");
  line.append(ToUtf8(component)).append("] ");
  for (const char c : ToUtf8(text)) {
    if (c == '\n') {
      line += "\\n";
    } else {
      line += c;
    }
  }
  line += '\n';

  const wchar_t* path = _wgetenv(L"WATTLEAF_LOG_FILE");
  const UniqueFile log(path != nullptr && *path != L'\0' ? _wfopen(path, L"ab") : nullptr);
  std::FILE* file = log ? log.get() : stderr;
  std::fwrite(line.data(), 1, line.size(), file);
  std::fflush(file);
}

void Record(Standin::LogLevel level, const wchar_t* component, const wchar_t* format,
            va_list arguments) {
  const std::wstring text = Print(format, arguments);
  const std::lock_guard guard(Lock());
  const Sink sink = CurrentSink();
  if (sink.call != nullptr) {
    sink.call(sink.context, level, component, text.c_str());
  } else {
    WriteLine(level, component, text);
  }
}

}  // namespace

namespace Standin {

void SetLogSink(LogSink sink, void* context) {
  const std::lock_guard guard(Lock());
  CurrentSink() = {sink, context};
}

}  // namespace Standin

namespace Zq::Gantry::Logging {

void TraceLogger::LogInfo(const wchar_t* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  Record(Standin::LogLevel::kInfo, L"", format, arguments);
  va_end(arguments);
}

void TraceLogger::LogInfo(LoggingData data, ...) {
  va_list arguments;
  va_start(arguments, data);
  Record(Standin::LogLevel::kInfo, data.component, data.format, arguments);
  va_end(arguments);
}

void TraceLogger::LogWarning(const wchar_t* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  Record(Standin::LogLevel::kWarning, L"", format, arguments);
  va_end(arguments);
}

void TraceLogger::LogWarning(LoggingData data, ...) {
  va_list arguments;
  va_start(arguments, data);
  Record(Standin::LogLevel::kWarning, data.component, data.format, arguments);
  va_end(arguments);
}

void TraceLogger::LogError(const wchar_t* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  Record(Standin::LogLevel::kError, L"", format, arguments);
  va_end(arguments);
}

void TraceLogger::LogError(LoggingData data, ...) {
  va_list arguments;
  va_start(arguments, data);
  Record(Standin::LogLevel::kError, data.component, data.format, arguments);
  va_end(arguments);
}

TraceLogger* LogManager::GetLogger() {
  static TraceLogger logger;
  return &logger;
}

}  // namespace Zq::Gantry::Logging
