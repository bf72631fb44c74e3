#pragma once

#include <cstdint>

#include "base/calendar.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// The time range whose rows count: from a cutoff on, including the cutoff's own second.
class ReportingPeriod {
 public:
  /// The cutoff is `days` steps of 86400 seconds before `now`, both local, with its hour then set
  /// to that of `now`. If the cutoff is outside the calendar, every row with a valid time counts.
  ReportingPeriod(const DateTime& now, std::int32_t days);

  /// A time outside the calendar never counts.
  [[nodiscard]] bool Includes(const DateTime& time) const;

 private:
  std::int64_t firstInstant_;
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
