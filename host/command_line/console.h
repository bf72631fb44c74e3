#pragma once

#include <chrono>
#include <string>

namespace WattleafHost {

/// Sets standard output and error to UTF-8 with "\n" as the line end.
void PrepareConsole();

/// Makes the C library, which the service shares, use the time zone of Windows.
void UseSystemZone();

/// Reserves standard output for Print. From now on the output of the service and of the tools that
/// it starts goes to the log, in order with the log's lines.
void ReserveStandardOutput();

/// Writes UTF-8 text unchanged to standard output.
void Print(const std::string& text);

/// Writes one line to standard error, with the program's name first.
void Notice(const std::string& text);

/// A line on standard error that is overwritten during a wait and erased by the destructor. If
/// standard error is not a terminal, writes a line every ten seconds instead.
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
