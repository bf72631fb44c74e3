#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace WattleafHost {

// The program's exit statuses.
inline constexpr int kDone = 0;
/// A command returned a status other than 0.
inline constexpr int kCommandFailed = 1;
inline constexpr int kWrongArguments = 2;
/// serve-once: no pass was completed; commands were run nevertheless.
inline constexpr int kNoPass = 3;
/// The library cannot be loaded, or it threw an exception.
inline constexpr int kNoService = 4;

/// The command line. Texts are UTF-8.
struct Options {
  bool json = false;
  bool simulateCalls = true;
  /// serve-once: the worker sleeps its 90 seconds. The sleep of a day after the pass ends the wait.
  bool realTime = false;
  /// serve-once: the longest wait for the pass.
  unsigned int limitSeconds = 900;
  /// True for the subcommand command, false for serve-once.
  bool oneCommand = false;
  unsigned int number = 0;
  /// command: nothing if no input was given.
  std::optional<std::string> input;
  /// The input of command 2, unless `input` has one.
  std::string iconFolder;
  unsigned int days = 30;
};

/// The program must end with this status; help, version or usage has been printed.
struct Finished {
  int exitStatus = 0;
};

/// Reads the arguments after the program's name, which are UTF-8.
[[nodiscard]] std::variant<Options, Finished> ReadOptions(
    const std::vector<std::string>& arguments);

}  // namespace WattleafHost
