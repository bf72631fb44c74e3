#pragma once

#include <windows.h>

#include <cstdint>

namespace TestSupport {

/// The number of handles that this process has open. Asks for each value, since Wine 8 always
/// answers 0 to GetProcessHandleCount. Values are multiples of four, and the system gives free
/// small ones first.
[[nodiscard]] inline long CountOpenHandles() {
  constexpr std::uintptr_t kStep = 4;
  constexpr std::uintptr_t kLongestGap = 1024 * kStep;
  long count = 0;
  for (std::uintptr_t value = kStep, last = 0; value - last <= kLongestGap; value += kStep) {
    DWORD flags = 0;
    if (!GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags)) continue;
    ++count;
    last = value;
  }
  return count;
}

}  // namespace TestSupport
