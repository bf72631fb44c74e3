#pragma once

#include <cstddef>

namespace Soak {

/// What this process holds at the moment.
struct ProcessUse {
  long handles = 0;
  long privateBytes = 0;  ///< what the system counts as this process's own; under Wine also Wine's
                          ///< pages outside of the Windows process
  long committedBytes = 0;  ///< private pages of the Windows process: heaps, stacks, allocations
  long heapBytes = 0;       ///< blocks in use in all heaps
  long freeBytes = 0;       ///< free blocks of all heaps, whose memory is committed too
};

/// Other threads should be idle.
[[nodiscard]] ProcessUse MeasureProcess();

}  // namespace Soak
