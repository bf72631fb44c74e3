#pragma once

#include <mutex>
#include <ostream>
#include <string>
#include <vector>

#include "logging_standin.h"
#include "support/call_record.h"

namespace TestSupport {

/// One record of the log as the product wrote it.
struct LogRecord {
  Standin::LogLevel level;
  std::wstring text;
  std::wstring component;

  bool operator==(const LogRecord&) const = default;
};

std::ostream& operator<<(std::ostream& out, const LogRecord& record);

LogRecord Info(std::wstring text, std::wstring component = {});
LogRecord Warning(std::wstring text, std::wstring component = {});
LogRecord Error(std::wstring text, std::wstring component = {});

/// The line of a log record in a CallRecord: "log info: <text>"; the component is left out, and a
/// character outside ASCII is "?".
std::string LogLine(const LogRecord& record);

/// Collects every record of the process for as long as it lives; from any thread.
class LogCapture {
 public:
  LogCapture();
  /// Adds each line to `record` too, as LogLine writes it.
  explicit LogCapture(CallRecord& record);
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;
  ~LogCapture();

  std::vector<LogRecord> Records() const;
  void Clear();

 private:
  static void Add(void* self, Standin::LogLevel level, const wchar_t* component,
                  const wchar_t* text);

  CallRecord* record_ = nullptr;
  mutable std::mutex lock_;
  std::vector<LogRecord> records_;
};

}  // namespace TestSupport
