#pragma once

// Stand-in: the collector's settings, read from the environment.

#include <cstdint>
#include <string>

#include "notebook_model.h"

namespace Standin {

inline constexpr int kMostDays = 211;

struct CollectorSettings {
  std::string status;      // WATTLEAF_COLLECTOR_STATUS; see collector_standin.cpp
  int days;                // WATTLEAF_COLLECTOR_DAYS, today included; at most kMostDays
  ModelSettings model;     // WATTLEAF_COLLECTOR_SEED, WATTLEAF_COLLECTOR_PERIOD
  std::int64_t now;        // WATTLEAF_COLLECTOR_NOW in seconds since 1970; default: the clock
  std::wstring truthPath;  // WATTLEAF_COLLECTOR_TRUTH; default: beside the data folder
  std::string failure;     // WATTLEAF_COLLECTOR_FAILURE; see collector_standin.cpp
  bool holdsLock;          // WATTLEAF_COLLECTOR_LOCK is "held"; see collector_standin.cpp
};

[[nodiscard]] CollectorSettings ReadCollectorSettings();

}  // namespace Standin
