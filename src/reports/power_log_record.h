#pragma once

#include <cstdint>
#include <string>

#include "base/date_time.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// One row of the 30-day store.
struct PowerLogRecord {
  std::string Name;              ///< the application's identity in the report, as UTF-8
  std::string DisplayName;       ///< empty where nobody knows it
  DateTime TimeStamp;            ///< local
  std::int64_t TotalEnergy = 0;  ///< in the report's own unit, which nothing interprets
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
