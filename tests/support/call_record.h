#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

namespace TestSupport {

/// The events of a test in order, one line each: calls of fakes, log lines, waits. Any thread may
/// add lines. Objects that do so, such as LogCapture, must not outlive the record.
class CallRecord {
 public:
  CallRecord() = default;
  CallRecord(const CallRecord&) = delete;
  CallRecord& operator=(const CallRecord&) = delete;

  void Add(std::string line);

  [[nodiscard]] std::vector<std::string> Lines() const;
  /// The lines that begin with one of `beginnings`, in order.
  [[nodiscard]] std::vector<std::string> LinesOf(const std::vector<std::string>& beginnings) const;
  void Clear();

  /// Waits until the record has `count` lines equal to `line`; false after 30 seconds.
  [[nodiscard]] bool WaitFor(const std::string& line, int count = 1) const;

 private:
  mutable std::mutex lock_;
  mutable std::condition_variable added_;
  std::vector<std::string> lines_;
};

}  // namespace TestSupport
