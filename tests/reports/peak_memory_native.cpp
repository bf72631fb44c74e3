#include "reports/peak_memory.h"

#include <sys/resource.h>

#include <cstdint>

namespace TestSupport {

std::size_t PeakMemoryBytes() {
  rusage usage{};
  if (getrusage(RUSAGE_SELF, &usage) != 0) return SIZE_MAX;
  return static_cast<std::size_t>(usage.ru_maxrss) * 1024;
}

}  // namespace TestSupport
