#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

namespace TestSupport {

/// What happened in a test, one line each, in one order: calls of fakes, log lines, waits. Any
/// thread may add. Objects that add lines, such as LogCapture, borrow the record.
class CallRecord {
 public:
  CallRecord() = default;
  CallRecord(const CallRecord&) = delete;
  CallRecord& operator=(const CallRecord&) = delete;

  void Add(std::string line);

  std::vector<std::string> Lines() const;
  /// The lines that begin with one of `beginnings`, in their order.
  std::vector<std::string> LinesOf(const std::vector<std::string>& beginnings) const;
  void Clear();

  /// Waits until the record has `count` lines equal to `line`; false if that takes 30 seconds.
  [[nodiscard]] bool WaitFor(const std::string& line, int count = 1) const;

 private:
  mutable std::mutex lock_;
  mutable std::condition_variable added_;
  std::vector<std::string> lines_;
};

}  // namespace TestSupport
