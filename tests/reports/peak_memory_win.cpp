#include "reports/peak_memory.h"

#include <windows.h>

#include <psapi.h>

#include <algorithm>

namespace TestSupport {

std::size_t PeakMemoryBytes() {
  PROCESS_MEMORY_COUNTERS counters{};
  if (!GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof(counters))) return SIZE_MAX;
  return std::max(counters.PeakPagefileUsage, counters.PeakWorkingSetSize);
}

}  // namespace TestSupport
