#include "reports/reporting_period.h"

#include "base/calendar.h"
#include "base/local_calendar.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

/// The negative in 32-bit arithmetic, where the smallest number is its own negative.
std::int32_t Negated(std::int32_t days) {
  return static_cast<std::int32_t>(0U - static_cast<std::uint32_t>(days));
}

}  // namespace

ReportingPeriod::ReportingPeriod(const DateTime& now, std::int32_t days)
    : firstInstant_(InstantOf(ShiftKeepingHour(now, Negated(days) * kSecondsPerDay))) {}

bool ReportingPeriod::Includes(const DateTime& time) const {
  const std::int64_t instant = InstantOf(time);
  return instant != -1 && instant >= firstInstant_;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
