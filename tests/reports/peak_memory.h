#pragma once

#include <cstddef>

namespace TestSupport {

/// The peak memory of this process in bytes: committed or resident on Windows, resident natively.
[[nodiscard]] std::size_t PeakMemoryBytes();

}  // namespace TestSupport
