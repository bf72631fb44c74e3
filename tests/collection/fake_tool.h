#pragma once

#include <functional>
#include <string>
#include <vector>

#include "import_patch.h"

namespace TestSupport {

/// Replaces the command interpreter and SetCurrentDirectoryW: no tool runs and the current
/// directory stays. One at a time; any thread may make the calls.
class FakeTool {
 public:
  FakeTool();
  FakeTool(const FakeTool&) = delete;
  FakeTool& operator=(const FakeTool&) = delete;
  ~FakeTool();

  /// The exit status of later runs; 0 by default.
  void EndWith(int status);
  /// Called in the middle of each run.
  void DuringRun(std::function<void()> action);
  /// Makes each change of the directory fail.
  void RefuseDirectories();

  /// The calls in order: "enter <directory>" and "run <command line>".
  [[nodiscard]] std::vector<std::string> Calls() const;

 private:
  Standin::ImportPatch patchedSystem_;
  Standin::ImportPatch patchedDirectory_;
};

}  // namespace TestSupport
