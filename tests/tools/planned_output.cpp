// Stands for a test program when the scripts that run them are tested: prints the lines of
// NAME.plan beside the program NAME.exe, from the second on, and ends with the status in the first.
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

int main(int, char** arguments) {
  const std::string program = arguments[0];
  std::ifstream plan(program.substr(0, program.rfind('.')) + ".plan");
  std::string status;
  std::getline(plan, status);
  for (std::string line; std::getline(plan, line);) std::puts(line.c_str());
  std::fflush(stdout);
  // Without the runtime's clean-up, so that any status reaches the caller unchanged.
  std::_Exit(std::atoi(status.c_str()));
}
