#pragma once

#include <cstdint>
#include <functional>
#include <map>

#include "base/calendar.h"
#include "base/json_document.h"

// The ledger of daily energy: which days are worked out, and its form on disk, an array of objects
// {"Key":"2024-03-01","Value":12.5} in ascending order of date.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// Watt-hours by day. A key stands at 00:00:00 local time; 0.0 means that nothing is booked yet,
/// any other value is final.
using PowerLedger = std::map<DateTime, float>;

inline constexpr wchar_t kLedgerFileName[] = L"PowerConsumption.json";
/// How far back the ledger reaches: 210 days.
inline constexpr std::int64_t kRetentionSeconds = 18'144'000;
static_assert(kRetentionSeconds == 210 * kSecondsPerDay);
/// Today and 210 days back.
inline constexpr int kMostLedgerDays = 211;

/// The last day that the walk reaches; one that comes from the file must be later.
DateTime OldestDay(const DateTime& today);

/// Enters what the file holds about days after `oldest`. Elements without a string "Key" or a
/// number "Value" are stepped over, as is a root that is no array.
void LoadLedger(const GenericDocument& document, const DateTime& oldest, PowerLedger& ledger);

/// What the walk needs from outside.
struct LedgerDays {
  /// Watt-hours of one day.
  std::function<float(const DateTime& day)> energyWh;
  /// Called for a day whose encrypted samples are no longer needed: they count as gone for the rest
  /// of the walk, and are deleted once the ledger is saved.
  std::function<void(const DateTime& day)> discardSamples;
};

/// Walks from `today` back to the oldest day, works out today and every day that is missing or
/// stands at 0.0, and discards the samples of each day that turns out non-zero and is no neighbour
/// of today, before the next day is worked out. At most kMostLedgerDays days, whatever the clock
/// says.
void UpdateLedger(const DateTime& today, PowerLedger& ledger, const LedgerDays& days);

/// The document for the file.
GenericDocument LedgerDocument(const PowerLedger& ledger);

/// Watt-hours per day over `today` and the six days before it. Days that the ledger lacks count as
/// 0.0: the divisor is always seven.
float AverageDayEnergyWh(const DateTime& today, const PowerLedger& ledger);

/// The trees that stand for an average of so many watt-hours a day.
float TreesSaved(float averageWh);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
