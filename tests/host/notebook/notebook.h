#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/notebook/host_process.h"
#include "support/scoped_variable.h"
#include "support/temp_folder.h"

namespace TestSupport {

/// A run of the host that is installed on the simulated notebook, and the lines of the service's
/// log.
struct NotebookRun {
  HostRun host;
  std::vector<std::string> log;

  /// The number of log lines that equal `line`.
  [[nodiscard]] long CountInLog(const std::string& line) const;
};

/// Runs an installed host, with ten days of samples and of reported application energy.
[[nodiscard]] NotebookRun RunOnNotebook(const std::vector<std::wstring>& arguments,
                                        const std::wstring& host = InstalledHost());

/// False on a machine without the simulated notebook, where its tests are skipped.
[[nodiscard]] bool HasNotebook(const std::wstring& host = InstalledHost());

/// A test that is skipped on a machine without the simulated notebook.
class OnNotebook : public testing::Test {
 protected:
  void SetUp() override {
    if (!HasNotebook()) GTEST_SKIP() << "no simulated notebook on this machine";
  }
};

/// Makes the simulated collector record its calls, in programs that are run while this object
/// exists.
class CollectorCalls {
 public:
  /// In order: create, load, callback, start, stop, destroy, unload.
  [[nodiscard]] std::vector<std::string> Lines() const;

 private:
  const TempFolder folder_;
  const std::wstring path_ = folder_.File(L"calls.txt");
  const ScopedVariable variable_{L"WATTLEAF_COLLECTOR_CALLS", path_};
};

}  // namespace TestSupport
