#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace WattleafHost {

// The program's exit statuses.
inline constexpr int kDone = 0;
/// A command returned a status other than 0; doctor: this machine cannot measure.
inline constexpr int kCommandFailed = 1;
inline constexpr int kWrongArguments = 2;
/// serve-once: no pass was completed; commands were run nevertheless.
inline constexpr int kNoPass = 3;
/// The library cannot be loaded, or it threw an exception.
inline constexpr int kNoService = 4;
/// A file or folder that the program itself needs cannot be read or written (file_failure.h).
inline constexpr int kFileFailed = 5;

/// serve-once.
struct ServeOnceRequest {
  /// The worker sleeps its 90 seconds. The sleep of a day after the pass ends the wait.
  bool realTime = false;
  /// The longest wait for the pass.
  unsigned int limitSeconds = 900;
  /// Print the series and the ranking as comma-separated values.
  bool csv = false;
};

/// command N [INPUT].
struct CommandRequest {
  unsigned int number = 0;
  /// Nothing if no input was given.
  std::optional<std::string> input;
  /// Print the result, a series or the ranking, as comma-separated values.
  bool csv = false;
};

/// explain DAY [HOUR].
struct ExplainRequest {
  std::string date;  ///< a date of the calendar, "2026-11-22"
  /// 0 to 23; nothing for the whole day.
  std::optional<int> hour;
  /// One line for each interval instead of one for neighbours with the same fate.
  bool eachInterval = false;
};

/// export.
struct ExportRequest {
  /// Comma-separated values instead of JSON lines.
  bool csv = false;
  /// Empty for standard output.
  std::string output;
};

/// metrics FILE.
struct MetricsRequest {
  std::string output;
};

/// report FILE.
struct ReportRequest {
  std::string output;
};

/// doctor.
struct DoctorRequest {
  /// Makes, starts and stops the collector to learn its status; it may write samples.
  bool startCollector = false;
  bool runTool = true;
};

/// The command line. Texts are UTF-8.
struct Options {
  bool json = false;
  bool simulateCalls = true;
  /// The input of command 2, unless the request has its own.
  std::string iconFolder;
  unsigned int days = 30;
  /// The subcommand with its own options.
  std::variant<ServeOnceRequest, CommandRequest, ExplainRequest, ExportRequest, MetricsRequest,
               ReportRequest, DoctorRequest>
      request;
};

/// The program must end with this status; help, version or usage has been printed.
struct Finished {
  int exitStatus = 0;
};

/// Reads the arguments after the program's name, which are UTF-8.
[[nodiscard]] std::variant<Options, Finished> ReadOptions(
    const std::vector<std::string>& arguments);

}  // namespace WattleafHost
