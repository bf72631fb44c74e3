#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>

// The operations that a benchmark program measures: time by default, and with `--memory NAME` the
// peak memory of one. The measured part of each is one function, from the files on disk to the
// result.
namespace Bench {

struct Operation {
  /// "day/ours", "day/raw": operations with one name before the separator are compared.
  std::string name;
  /// Writes the files, also those that an earlier run has changed. Not measured.
  std::function<void()> prepare;
  /// The measured part. False for a wrong result, which ends the program.
  std::function<bool()> run;
};

/// Adds an operation to the program; for objects of static storage.
struct Registration {
  explicit Registration(Operation operation);
};

/// `full`, or `small` for a run that only shows that the program works (`--small`).
[[nodiscard]] std::size_t Sized(std::size_t full, std::size_t small);

/// A folder of this run, which exists until the program ends.
[[nodiscard]] const std::filesystem::path& Folder();

}  // namespace Bench
