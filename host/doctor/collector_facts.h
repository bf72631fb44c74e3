#pragma once

#include <string>

#include "doctor/machine_facts.h"

namespace WattleafHost {

/// Judges the collector's file as the library does before it loads it. A trusted file in a
/// protected place is loaded and freed again, which runs its code; the collector itself is made,
/// started and stopped only if `start` is true.
[[nodiscard]] CollectorFacts ReadCollectorFacts(const std::wstring& path, bool start);

}  // namespace WattleafHost
