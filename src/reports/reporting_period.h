#pragma once

#include <cstdint>

#include "base/date_time.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// The rows that count: those from a cutoff on, the cutoff's own second included.
class ReportingPeriod {
 public:
  /// From `days` steps of 86400 seconds before `now`, with the hour of `now` put back by hand.
  /// A cutoff outside the calendar lets every row count that has a time.
  ReportingPeriod(const DateTime& now, std::int32_t days);

  /// A time outside the calendar never counts.
  bool Includes(const DateTime& time) const;

 private:
  std::int64_t firstInstant_;
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
