#include "ledger/day_order.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

DayOrder::KnownDays::KnownDays(const DayOrder& order, const LocalTime& one, const LocalTime& other)
    : order_(order), days_{one, other} {
  *order_.known_ = this;
}

DayOrder::KnownDays::~KnownDays() { *order_.known_ = nullptr; }

std::optional<std::int64_t> DayOrder::KnownDays::TryFind(const DateTime& day) const {
  for (const LocalTime& known : days_) {
    if (HasSameFields(known.fields, day)) return known.instant;
  }
  return std::nullopt;
}

bool DayOrder::operator()(const DateTime& left, const DateTime& right) const {
  if (const KnownDays* known = *known_) {
    const std::optional<std::int64_t> leftInstant = known->TryFind(left);
    const std::optional<std::int64_t> rightInstant = known->TryFind(right);
    if (leftInstant && rightInstant) return *leftInstant < *rightInstant;
  }
  return left < right;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
