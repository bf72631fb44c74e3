#include "support/log_capture.h"

namespace TestSupport {

std::ostream& operator<<(std::ostream& out, const LogRecord& record) {
  static constexpr const char* kLevels[] = {"info", "warning", "error"};
  const auto narrow = [](const std::wstring& text) {
    std::string result;
    for (const wchar_t c : text) result += c < 0x7F ? static_cast<char>(c) : '?';
    return result;
  };
  return out << kLevels[static_cast<int>(record.level)] << " [" << narrow(record.component)
             << "] \"" << narrow(record.text) << '"';
}

LogRecord Info(std::wstring text, std::wstring component) {
  return {Standin::LogLevel::kInfo, std::move(text), std::move(component)};
}

LogRecord Warning(std::wstring text, std::wstring component) {
  return {Standin::LogLevel::kWarning, std::move(text), std::move(component)};
}

LogRecord Error(std::wstring text, std::wstring component) {
  return {Standin::LogLevel::kError, std::move(text), std::move(component)};
}

LogCapture::LogCapture() { Standin::SetLogSink(&LogCapture::Add, this); }

LogCapture::~LogCapture() { Standin::SetLogSink(nullptr, nullptr); }

std::vector<LogRecord> LogCapture::Records() const {
  const std::lock_guard guard(lock_);
  return records_;
}

void LogCapture::Clear() {
  const std::lock_guard guard(lock_);
  records_.clear();
}

void LogCapture::Add(void* self, Standin::LogLevel level, const wchar_t* component,
                     const wchar_t* text) {
  auto* capture = static_cast<LogCapture*>(self);
  const std::lock_guard guard(capture->lock_);
  capture->records_.push_back({level, text, component});
}

}  // namespace TestSupport
