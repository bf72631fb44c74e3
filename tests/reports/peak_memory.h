#pragma once

#include <cstddef>

namespace TestSupport {

/// The most memory that this process has had at one time: on Windows what it had committed,
/// natively what was resident.
std::size_t PeakMemoryBytes();

}  // namespace TestSupport
