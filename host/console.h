#pragma once

#include <chrono>
#include <string>

namespace WattleafHost {

/// Standard output and error carry UTF-8 with plain line ends.
void PrepareConsole();

/// Makes the C library, which the service shares, use Windows' own time zone.
void UseSystemZone();

/// From now on standard output is this program's alone: what the service and the tools that it
/// starts write there goes to the log, in its place among the log's lines.
void KeepOutputToOurselves();

/// UTF-8 to standard output, as it stands.
void Print(const std::string& text);

/// One line to standard error, behind the program's name.
void Notice(const std::string& text);

/// A line on standard error that is written over while something is waited for, and wiped at the
/// end. Silent where standard error is no terminal.
class ProgressLine {
 public:
  explicit ProgressLine(std::string text);
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;
  ~ProgressLine();

  void Update(std::chrono::seconds elapsed);

 private:
  const std::string text_;
  const bool visible_;
  std::chrono::seconds nextPlainLine_;
};

}  // namespace WattleafHost
