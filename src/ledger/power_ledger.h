#pragma once

#include <cstdint>
#include <functional>
#include <map>

#include "base/calendar.h"
#include "ledger/day_order.h"

// The ledger of daily energy: which days are worked out, and the figures over several days. Its
// file is read and written in ledger_file.h. `today` is 00:00:00 local time everywhere here.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// Watt-hours by day. Each key is 00:00:00 local time. 0.0 means that nothing is booked yet; any
/// other value is final, except today's.
using PowerLedger = std::map<DateTime, float, DayOrder>;

/// How far back the ledger reaches: 210 days.
inline constexpr std::int64_t kRetentionSeconds = 18'144'000;
static_assert(kRetentionSeconds == 210 * kSecondsPerDay);
/// Today and the 210 days before it.
inline constexpr int kMostLedgerDays = 211;

/// The earliest day that UpdateLedger visits. LoadLedger accepts only days after it.
[[nodiscard]] DateTime OldestDay(const DateTime& today);

/// What UpdateLedger calls. Exceptions propagate.
struct LedgerDays {
  /// The energy of one day in watt-hours.
  std::function<float(const DateTime& day)> energyWh;
  /// Called for a day whose encrypted samples are no longer needed. They must count as deleted for
  /// the rest of the walk, and be deleted only after the ledger is saved.
  std::function<void(const DateTime& day)> discardSamples;
};

/// Walks from `today` back to the oldest day. Works out today and each day that is missing or 0.0;
/// discards the samples of a day that turns out non-zero and is neither today nor a neighbour of
/// today, before it works out the next day. Visits at most kMostLedgerDays days, however wrong the
/// clock is.
void UpdateLedger(const DateTime& today, PowerLedger& ledger, const LedgerDays& days);

/// Watt-hours per day, averaged over `today` and the six days before it. Days that the ledger lacks
/// count as 0.0: the divisor is always seven.
[[nodiscard]] float AverageDayEnergyWh(const DateTime& today, const PowerLedger& ledger);

/// The number of trees that corresponds to an average of so many watt-hours a day.
[[nodiscard]] float TreesSaved(float averageWh);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
