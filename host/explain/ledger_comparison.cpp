#include "explain/ledger_comparison.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#include "ledger/power_ledger.h"

namespace WattleafHost {

namespace {

using namespace Zq::Gantry::Server::Services::Wattleaf;

bool HaveSameBits(float left, float right) {
  return std::bit_cast<std::uint32_t>(left) == std::bit_cast<std::uint32_t>(right);
}

bool LacksANeighbour(const DayExplanation& explanation) {
  return std::ranges::any_of(explanation.intervals, [](const ExplainedInterval& interval) {
    return interval.booking == Booking::kNoNeighbour;
  });
}

}  // namespace

const char* LedgerStateText(LedgerState state) {
  switch (state) {
    case LedgerState::kAbsent:
      return "no file; the next pass writes one";
    case LedgerState::kLeftOut:
      return "a link, a folder or another thing in its place, which is never read";
    case LedgerState::kUnreadable:
      return "not a JSON list; the next pass starts from an empty ledger and replaces it";
    case LedgerState::kRead:
      return "";
  }
  return "";
}

const char* LedgerRelationText(LedgerRelation relation) {
  switch (relation) {
    case LedgerRelation::kEqual:
      return "the ledger has the same value";
    case LedgerRelation::kNoLedger:
      return "there is no ledger that can be read";
    case LedgerRelation::kFuture:
      return "the day is in the future: check the clock of the machine";
    case LedgerRelation::kBeyondReach:
      return "the day is older than the 210 days of the ledger";
    case LedgerRelation::kNothingToBook:
      return "nothing is booked, and the samples give nothing; each pass tries again";
    case LedgerRelation::kNotBookedYet:
      return "nothing is booked yet; the next pass books this value";
    case LedgerRelation::kToday:
      return "the ledger has the value of the last pass; today is worked out again at each pass";
    case LedgerRelation::kSamplesGone:
      return "booked earlier and final; the samples are deleted once a day of two days ago or "
             "more is booked";
    case LedgerRelation::kNeighbourGone:
      return "booked earlier and final; the samples of a neighbouring day, which a link needs, are "
             "no longer there";
    case LedgerRelation::kFinal:
      return "booked earlier and final; samples that came after that pass are not added";
  }
  return "";
}

LedgerRelation CompareWithLedger(const DateTime& day, const DateTime& today, LedgerState state,
                                 std::optional<float> booked, const DayExplanation& explanation) {
  if (today < day) return LedgerRelation::kFuture;
  if (day < OldestDay(today)) return LedgerRelation::kBeyondReach;
  if (state != LedgerState::kRead) return LedgerRelation::kNoLedger;
  // A value of 0.0 means that nothing is booked.
  if (booked.value_or(0.0F) == 0.0F) {
    return explanation.energyWh == 0.0F ? LedgerRelation::kNothingToBook
                                        : LedgerRelation::kNotBookedYet;
  }
  if (HaveSameBits(*booked, explanation.energyWh)) return LedgerRelation::kEqual;
  if (!(day < today)) return LedgerRelation::kToday;
  if (explanation.samples.empty()) return LedgerRelation::kSamplesGone;
  return LacksANeighbour(explanation) ? LedgerRelation::kNeighbourGone : LedgerRelation::kFinal;
}

}  // namespace WattleafHost
