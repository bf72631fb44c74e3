#pragma once

#include <string>
#include <vector>

namespace TestSupport {

/// What a run of the console host left.
struct HostRun {
  unsigned long exitStatus = 0;
  std::string output;
  std::string errors;
};

/// Runs a program with arguments, which must need no quoting beyond blanks, and waits for its end.
/// Standard input is empty. Fails the test where it cannot be started or does not end in time.
HostRun RunProgram(const std::wstring& program, const std::vector<std::wstring>& arguments);

/// wattleaf_host beside this test program.
HostRun RunHost(const std::vector<std::wstring>& arguments);

/// wattleaf_host where the simulated notebook has it, under Program Files.
std::wstring InstalledHost();

/// Sets a variable of the environment for the programs that are run from here.
class ScopedVariable {
 public:
  ScopedVariable(std::wstring name, const std::wstring& value);
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;
  ~ScopedVariable();

 private:
  const std::wstring name_;
};

}  // namespace TestSupport
