#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace WattleafHost {

/// What the user asked for.
struct Options {
  bool json = false;
  bool simulateCalls = true;
  /// serve-once: the worker sleeps its 90 seconds; the day's sleep ends the pass without being
  /// waited for.
  bool realTime = false;
  /// serve-once: how long to wait for the pass.
  unsigned int limitSeconds = 900;
  /// serve-once where false, command where true.
  bool oneCommand = false;
  unsigned int number = 0;
  /// command: nothing where none was given.
  std::optional<std::string> input;
  /// What command 2 is asked with, unless an input was given. The folder is UTF-8.
  std::string iconFolder;
  unsigned int days = 30;
};

/// The program ends with this status; help, version or usage has been printed.
struct Finished {
  int exitStatus = 0;
};

std::variant<Options, Finished> ReadOptions(const std::vector<std::string>& arguments);

}  // namespace WattleafHost
