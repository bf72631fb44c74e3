#include "support/log_capture.h"

namespace TestSupport {

namespace {

const char* LevelName(Standin::LogLevel level) {
  static constexpr const char* kLevels[] = {"info", "warning", "error"};
  return kLevels[static_cast<int>(level)];
}

std::string Narrow(const std::wstring& text) {
  std::string result;
  for (const wchar_t c : text) result += c < 0x7F ? static_cast<char>(c) : '?';
  return result;
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const LogRecord& record) {
  return out << LevelName(record.level) << " [" << Narrow(record.component) << "] \""
             << Narrow(record.text) << '"';
}

std::string LogLine(const LogRecord& record) {
  return std::string("log ") + LevelName(record.level) + ": " + Narrow(record.text);
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

LogCapture::LogCapture(CallRecord& record) : record_(&record) {
  Standin::SetLogSink(&LogCapture::Add, this);
}

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
  if (capture->record_ != nullptr) capture->record_->Add(LogLine(capture->records_.back()));
}

}  // namespace TestSupport
