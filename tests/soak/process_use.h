#pragma once

#include <cstddef>

namespace Soak {

/// What this process holds at the moment.
struct ProcessUse {
  long handles = 0;
  long privateBytes = 0;  ///< pages that only this process has
  long heapBytes = 0;     ///< blocks in use in all of its heaps
  long freeBytes = 0;     ///< free blocks of its heaps, whose pages may be among the private ones
};

/// Other threads should be idle.
[[nodiscard]] ProcessUse MeasureProcess();

}  // namespace Soak
