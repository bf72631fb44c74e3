#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <iterator>
#include <utility>

#include "base/local_calendar.h"
#include "base/time_reader.h"
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
  explicit LedgerCursor(Ledger& ledger) : ledger_(ledger), entry_(ledger.end()) {}

  /// The entry of a day; null if there is none.
  [[nodiscard]] auto* Find(const LocalTime& day) {
    Seek(day);
    return IsAt(day) ? &entry_->second : nullptr;
  }

  /// The same for a day that is entered with 0.0 if there is none.
  [[nodiscard]] float& FindOrInsert(const LocalTime& day) {
    if (float* value = Find(day)) return *value;
    entry_ = ledger_.emplace_hint(entry_, day.fields, 0.0F);
    instant_ = day.instant;
    return entry_->second;
  }

 private:
  static constexpr int kMostSteps = 4;

  [[nodiscard]] bool IsAt(const LocalTime& day) const {
    return entry_ != ledger_.end() && instant_ == day.instant;
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
        const Entry previous = std::prev(entry_);
        const std::int64_t instant = InstantOfKey(previous, day);
        if (instant < day.instant) return;
        entry_ = previous;
        instant_ = instant;
      }
    }
    MoveTo(ledger_.lower_bound(day.fields), day);
  }

  void MoveTo(Entry entry, const LocalTime& near) {
    entry_ = entry;
    if (entry_ != ledger_.end()) instant_ = InstantOfKey(entry_, near);
  }

  static std::int64_t InstantOfKey(Entry entry, const LocalTime& near) {
    using Fields = std::array<std::int32_t, 9>;
    const DateTime& key = entry->first;
    if (std::bit_cast<Fields>(key) == std::bit_cast<Fields>(near.fields)) return near.instant;
    return InstantOf(key);
  }

  Ledger& ledger_;
  Entry entry_;
  std::int64_t instant_ = 0;  ///< of `entry_`, unless that is the end
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
