#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

namespace Faults {

/// From now on a crash, std::terminate and a run of more than a minute end the process, and
/// `report` names the call and its position.
void StartWatchdog(std::FILE* report);

/// While it exists, this is the run that the watchdog names.
class WatchedRun {
 public:
  WatchedRun(const char* scenario, const char* call, std::uint32_t position);
  WatchedRun(const WatchedRun&) = delete;
  WatchedRun& operator=(const WatchedRun&) = delete;
  ~WatchedRun();
};

}  // namespace Faults
