#pragma once

#include <functional>
#include <string>
#include <vector>

#include "import_patch.h"

namespace TestSupport {

/// Fakes the command interpreter and the change of the current directory, which then stays as it
/// is.
class FakeTool {
 public:
  FakeTool();
  FakeTool(const FakeTool&) = delete;
  FakeTool& operator=(const FakeTool&) = delete;
  ~FakeTool();

  /// What the tool ends with from now on; 0 at first.
  void EndWith(int status);
  /// Called in the middle of each run.
  void DuringRun(std::function<void()> action);
  /// Lets no directory be entered.
  void RefuseDirectories();

  /// The calls in their order: "enter <directory>" and "run <command line>".
  std::vector<std::string> Calls() const;

 private:
  Standin::ImportPatch patchedSystem_;
  Standin::ImportPatch patchedDirectory_;
};

}  // namespace TestSupport
