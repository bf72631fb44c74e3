#pragma once

#include <cstdint>
#include <iterator>
#include <limits>
#include <utility>

#include "base/local_calendar.h"
#include "base/local_time.h"
#include "ledger/day_order.h"
#include "ledger/power_ledger.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Finds days in a ledger, or in a constant one. The map itself asks the C library for both
/// instants of each comparison; the cursor asks for one or none if a day is near the last one that
/// it found, or near the end of the ledger at first. Only the cursor may insert while it is in use.
template <typename Ledger>
class LedgerCursor {
 public:
  using Entry = decltype(std::declval<Ledger&>().begin());

  /// Borrows the ledger.
  explicit LedgerCursor(Ledger& ledger)
      : ledger_(ledger), order_(ledger.key_comp()), entry_(ledger.end()) {}

  /// The entry of a day; null if there is none.
  [[nodiscard]] auto* Find(const LocalTime& day) {
    Seek(day);
    return IsAt(day) ? &entry_->second : nullptr;
  }

  /// The same for a day that is entered with 0.0 if there is none.
  [[nodiscard]] float& FindOrInsert(const LocalTime& day) {
    if (float* value = Find(day)) return *value;
    entry_ = Insert(day);
    instant_ = day.instant;
    return entry_->second;
  }

 private:
  static constexpr int kMostSteps = 4;
  static constexpr std::int64_t kUnknown = std::numeric_limits<std::int64_t>::max();

  [[nodiscard]] bool IsAt(const LocalTime& day) const {
    return entry_ != ledger_.end() && instant_ == day.instant;
  }

  /// Adds a day in front of the entry.
  [[nodiscard]] Entry Insert(const LocalTime& day) {
    if (entry_ == ledger_.end()) return ledger_.emplace_hint(entry_, day.fields, 0.0F);
    const DayOrder::KnownDays known(order_, day, {entry_->first, instant_});
    return ledger_.emplace_hint(entry_, day.fields, 0.0F);
  }

  /// Moves to the first entry that is not before `day`.
  void Seek(const LocalTime& day) {
    for (int step = 0; step < kMostSteps; ++step) {
      if (IsAt(day)) return;
      const bool isBefore = entry_ != ledger_.end() && instant_ < day.instant;
      if (isBefore) {
        MoveTo(std::next(entry_), day);
        if (entry_ == ledger_.end() || instant_ > day.instant) return;
      } else {
        if (entry_ == ledger_.begin()) return;
        const auto previous = std::prev(entry_);
        if (instantBefore_ == kUnknown) instantBefore_ = InstantOfKey(previous, day);
        if (instantBefore_ < day.instant) return;
        entry_ = previous;
        instant_ = std::exchange(instantBefore_, kUnknown);
      }
    }
    MoveTo(ledger_.lower_bound(day.fields), day);
  }

  void MoveTo(Entry entry, const LocalTime& near) {
    entry_ = entry;
    instantBefore_ = kUnknown;
    if (entry_ != ledger_.end()) instant_ = InstantOfKey(entry_, near);
  }

  static std::int64_t InstantOfKey(Entry entry, const LocalTime& near) {
    const DateTime& key = entry->first;
    return HasSameFields(key, near.fields) ? near.instant : InstantOf(key);
  }

  Ledger& ledger_;
  const DayOrder order_;  ///< that of the ledger
  Entry entry_;
  std::int64_t instant_ = 0;               ///< of `entry_`, unless that is the end
  std::int64_t instantBefore_ = kUnknown;  ///< of the entry in front of it, if it was asked for
};

/// The day `seconds` after `day`, with its hour restored (ShiftKeepingHour).
[[nodiscard]] inline LocalTime ShiftKeepingHour(const LocalTime& day, std::int64_t seconds) {
  LocalTime result;
  result.fields = LocalTimeOf(day.instant + seconds);
  result.fields.tm_hour = day.fields.tm_hour;
  result.instant = InstantOf(result.fields);
  return result;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
