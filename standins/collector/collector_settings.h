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
  std::int64_t now;        // WATTLEAF_COLLECTOR_NOW in seconds since 1970; the clock where unset
  std::wstring truthPath;  // WATTLEAF_COLLECTOR_TRUTH; beside the data folder where unset
  std::string failure;     // WATTLEAF_COLLECTOR_FAILURE; see collector_failures.h
  bool holdsLock;          // WATTLEAF_COLLECTOR_LOCK is "held"; see collector_lock.h
};

CollectorSettings ReadCollectorSettings();

}  // namespace Standin
