#pragma once

#include <optional>
#include <string>

#include "base/calendar.h"
#include "days/stored_ledger.h"
#include "explain/day_explanation.h"

namespace WattleafHost {

/// The state in words; empty for kRead.
[[nodiscard]] const char* LedgerStateText(LedgerState state);

/// How the value of a day in the ledger relates to its samples of now.
enum class LedgerRelation {
  kEqual,
  kNoLedger,       ///< there is no ledger that can be read
  kFuture,         ///< no pass has come to the day yet
  kBeyondReach,    ///< the day is older than the ledger reaches
  kNothingToBook,  ///< no value, and the samples give none
  kNotBookedYet,   ///< no value; the next pass books the samples
  kToday,          ///< the value is that of the last pass of today
  kSamplesGone,    ///< booked, and its samples are no longer there
  kNeighbourGone,  ///< booked with a neighbouring day whose samples are no longer there
  kFinal,          ///< booked from fewer or other samples than there are now
};

/// The relation in words.
[[nodiscard]] const char* LedgerRelationText(LedgerRelation relation);

/// Compares one day. `booked` is the day's value in the ledger's file, if it has one. `day` and
/// `today` are 00:00:00.
[[nodiscard]] LedgerRelation CompareWithLedger(const DateTime& day, const DateTime& today,
                                               LedgerState state, std::optional<float> booked,
                                               const DayExplanation& explanation);

}  // namespace WattleafHost
