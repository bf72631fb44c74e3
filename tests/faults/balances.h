#pragma once

#include <map>
#include <string>

#include "fault_points.h"

namespace Faults {

/// From now on counts what the library acquires successfully through `points` and what it releases,
/// from zero.
void CountResources(FaultPoints& points);

/// The name under which UnreleasedResources counts objects that were activated, which nothing here
/// releases.
inline constexpr const char* kActivations = "activations";

/// What is acquired and not released, by the name of the function that releases it.
[[nodiscard]] std::map<std::string, long> UnreleasedResources();

}  // namespace Faults
