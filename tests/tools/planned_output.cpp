// Stands for a test program when the scripts that run them are tested: prints the lines of
// NAME.plan beside the program NAME.exe, from the second on, and ends with the status in the first.
// A line "leave a process" is not printed: it starts one that has the same output and sleeps.
#include <process.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>

int main(int count, char** arguments) {
  if (count > 1) {
    std::this_thread::sleep_for(std::chrono::seconds(3));
    return 0;
  }
  const std::string program = arguments[0];
  std::ifstream plan(program.substr(0, program.rfind('.')) + ".plan");
  std::string status;
  std::getline(plan, status);
  for (std::string line; std::getline(plan, line);) {
    if (line == "leave a process") {
      _spawnl(_P_NOWAIT, program.c_str(), "planned_output", "sleep", nullptr);
    } else {
      std::puts(line.c_str());
    }
  }
  std::fflush(stdout);
  // Without the runtime's clean-up, so that any status reaches the caller unchanged.
  std::_Exit(std::atoi(status.c_str()));
}
