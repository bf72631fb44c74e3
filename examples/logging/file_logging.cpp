// A Logging.dll that appends each record to WattleafService.log in the folder of the program, one
// line of UTF-8 text each. The library does not load without a Logging.dll; a host with a log of
// its own passes the records on instead.

#include <windows.h>

#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <string>

#include "logging/trace_logger.h"

namespace {

using Zq::Gantry::Logging::LoggingData;
using Zq::Gantry::Logging::TraceLogger;

std::wstring LogPath() {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return path.substr(0, path.find_last_of(L'\\') + 1) + L"WattleafService.log";
}

/// The text of a record, cut off after 4095 characters. Line ends become blanks.
std::wstring Format(const wchar_t* format, va_list arguments) {
  wchar_t text[4096] = {};
  // The call of Windows' own C library: in the library's formats %s is wide text.
  _vsnwprintf(text, 4095, format, arguments);
  for (wchar_t& character : text) {
    if (character == L'\n' || character == L'\r') character = L' ';
  }
  return text;
}

std::string Utf8(const std::wstring& text) {
  const int length = static_cast<int>(text.size());
  const int bytes =
      WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
  std::string result(static_cast<std::size_t>(bytes), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), length, result.data(), bytes, nullptr, nullptr);
  return result;
}

/// Any thread of the library may log, at any time until the process ends.
void Write(const wchar_t* level, const wchar_t* component, const wchar_t* format,
           va_list arguments) {
  const std::string line =
      Utf8(std::wstring(level) + L" [" + component + L"] " + Format(format, arguments)) + "\r\n";
  static std::mutex lock;
  static const HANDLE file = CreateFileW(LogPath().c_str(), FILE_APPEND_DATA, FILE_SHARE_READ,
                                         nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  const std::lock_guard guard(lock);
  DWORD written = 0;
  WriteFile(file, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
}

}  // namespace

namespace Zq::Gantry::Logging {

// The library logs with a format alone, or with one in LoggingData that also names a component.

void TraceLogger::LogInfo(const wchar_t* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  Write(L"info", L"", format, arguments);
  va_end(arguments);
}

void TraceLogger::LogInfo(LoggingData data, ...) {
  va_list arguments;
  va_start(arguments, data);
  Write(L"info", data.component, data.format, arguments);
  va_end(arguments);
}

void TraceLogger::LogWarning(const wchar_t* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  Write(L"warning", L"", format, arguments);
  va_end(arguments);
}

void TraceLogger::LogWarning(LoggingData data, ...) {
  va_list arguments;
  va_start(arguments, data);
  Write(L"warning", data.component, data.format, arguments);
  va_end(arguments);
}

void TraceLogger::LogError(const wchar_t* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  Write(L"error", L"", format, arguments);
  va_end(arguments);
}

void TraceLogger::LogError(LoggingData data, ...) {
  va_list arguments;
  va_start(arguments, data);
  Write(L"error", data.component, data.format, arguments);
  va_end(arguments);
}

TraceLogger* LogManager::GetLogger() {
  static TraceLogger logger;
  return &logger;
}

}  // namespace Zq::Gantry::Logging
