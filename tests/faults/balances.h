#pragma once

#include <map>
#include <string>

#include "fault_points.h"

namespace Faults {

/// From now on counts what the library acquires successfully through `points` and what it releases,
/// from zero.
void CountResources(FaultPoints& points);

/// What is acquired and not released, by the name of the function that releases it.
[[nodiscard]] std::map<std::string, long> UnreleasedResources();

}  // namespace Faults
