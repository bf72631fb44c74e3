#pragma once

#include <mutex>
#include <ostream>
#include <string>
#include <vector>

#include "logging_standin.h"
#include "support/call_record.h"

namespace TestSupport {

/// One log record as the product wrote it.
struct LogRecord {
  Standin::LogLevel level;
  std::wstring text;
  std::wstring component;

  bool operator==(const LogRecord&) const = default;
};

std::ostream& operator<<(std::ostream& out, const LogRecord& record);

[[nodiscard]] LogRecord Info(std::wstring text, std::wstring component = {});
[[nodiscard]] LogRecord Warning(std::wstring text, std::wstring component = {});
[[nodiscard]] LogRecord Error(std::wstring text, std::wstring component = {});

/// The line for a log record in a CallRecord, "log info: <text>": without the component and with
/// "?" for each character outside ASCII.
[[nodiscard]] std::string LogLine(const LogRecord& record);

/// Collects every log record of the process, from any thread, while it exists. One at a time.
class LogCapture {
 public:
  LogCapture();
  /// Also adds the LogLine of each record to `record`.
  explicit LogCapture(CallRecord& record);
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;
  ~LogCapture();

  [[nodiscard]] std::vector<LogRecord> Records() const;
  void Clear();

 private:
  static void Add(void* self, Standin::LogLevel level, const wchar_t* component,
                  const wchar_t* text);

  CallRecord* record_ = nullptr;
  mutable std::mutex lock_;
  std::vector<LogRecord> records_;
};

}  // namespace TestSupport
