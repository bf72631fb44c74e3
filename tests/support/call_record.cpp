#include "support/call_record.h"

#include <algorithm>
#include <chrono>

namespace TestSupport {

void CallRecord::Add(std::string line) {
  const std::lock_guard guard(lock_);
  lines_.push_back(std::move(line));
  added_.notify_all();
}

std::vector<std::string> CallRecord::Lines() const {
  const std::lock_guard guard(lock_);
  return lines_;
}

std::vector<std::string> CallRecord::LinesOf(const std::vector<std::string>& beginnings) const {
  std::vector<std::string> chosen;
  for (const std::string& line : Lines()) {
    if (std::any_of(beginnings.begin(), beginnings.end(),
                    [&line](const std::string& text) { return line.starts_with(text); })) {
      chosen.push_back(line);
    }
  }
  return chosen;
}

void CallRecord::Clear() {
  const std::lock_guard guard(lock_);
  lines_.clear();
}

bool CallRecord::WaitFor(const std::string& line, int count) const {
  std::unique_lock guard(lock_);
  return added_.wait_for(guard, std::chrono::seconds(30),
                         [&] { return std::count(lines_.begin(), lines_.end(), line) >= count; });
}

}  // namespace TestSupport
