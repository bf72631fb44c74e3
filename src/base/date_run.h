#pragma once

#include <chrono>

#include "base/local_time.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Dates in a row between which the clocks do not change. Normalises dates without a time of day:
/// the C library is asked about the ends of the run, and about the dates in between only whether
/// its clocks show midnight there. For as long as the zone cannot change.
class DateRun {
 public:
  /// What TryNormalise does with `written`, a date whose day of the month is not 0. Takes almost
  /// nothing for a date in the run, or for one that a longer run contains.
  [[nodiscard]] bool TryNormaliseDate(const DateTime& written, LocalTime& time);

 private:
  using Day = std::chrono::sys_days;
  using Days = std::chrono::days;

  [[nodiscard]] bool Contains(Day day) const { return day >= first_ && day <= last_; }
  [[nodiscard]] Days Length() const { return last_ - first_ + Days(1); }
  /// Extends the run to a date near one of its ends and beyond it. False if that is not possible.
  [[nodiscard]] bool TryExtendTo(Day day);
  /// Begins a run with a date, whose time is `time`.
  void Begin(Day day, const LocalTime& time);
  /// The last date before a change, at most `most` dates from the end `end`. `step` is 1 or -1.
  [[nodiscard]] Day LastBeforeChange(Day end, Days step, Days most) const;
  /// Whether the clocks show midnight of `day` where a run without a change has it.
  [[nodiscard]] bool IsShown(Day day) const;
  /// `day` as it is if no change lies between it and the run.
  [[nodiscard]] LocalTime At(Day day) const;

  Day first_;
  Day last_ = first_ - Days(1);  // Empty at first.
  Day baseDay_;
  LocalTime base_;          // That of `baseDay_`.
  Days expectedLength_{0};  // Of a run near another one; 0 otherwise.
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
