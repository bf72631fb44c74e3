#pragma once

#include <string>
#include <vector>

namespace TestSupport {

/// The result of a program's run.
struct HostRun {
  unsigned long exitStatus = 0;
  std::string output;
  std::string errors;
};

/// Runs a program and waits for its end. The arguments may have blanks, but nothing else that must
/// be quoted. Standard input is empty. Fails the test if the program does not start or does not end
/// in time.
[[nodiscard]] HostRun RunProgram(const std::wstring& program,
                                 const std::vector<std::wstring>& arguments);

/// Runs the wattleaf_host beside this test program.
[[nodiscard]] HostRun RunHost(const std::vector<std::wstring>& arguments);

/// The path of the wattleaf_host that is installed on the simulated notebook, in a folder of
/// Program Files.
[[nodiscard]] std::wstring InstalledHost(const std::wstring& folder = L"Wattleaf");

}  // namespace TestSupport
