#pragma once

#include <string>
#include <vector>

namespace WattleafHost {

/// Keeps the warnings and errors that the library's code in this program logs while this object
/// exists. One at a time; for calls on the same thread.
class OwnLogLines {
 public:
  OwnLogLines();
  OwnLogLines(const OwnLogLines&) = delete;
  OwnLogLines& operator=(const OwnLogLines&) = delete;
  ~OwnLogLines();

  /// UTF-8, without line ends.
  [[nodiscard]] const std::vector<std::string>& Lines() const { return lines_; }
  void Add(std::string line) { lines_.push_back(std::move(line)); }

 private:
  std::vector<std::string> lines_;
};

}  // namespace WattleafHost
