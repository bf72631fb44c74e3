#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <vector>

#include "calendar_days.h"
#include "notebook_model.h"

namespace TestSupport {

/// The samples that the simulated collector writes for the days before today, so that a test can
/// choose a seed under which they have the form that it needs.
class NotebookDays {
 public:
  using Samples = std::optional<std::vector<Standin::ModelSample>>;

  /// From one sample to the next; the collector must be run with this period.
  static constexpr std::int64_t kPeriodSeconds = 300;

  NotebookDays();

  /// The day that is so many days before today.
  [[nodiscard]] Standin::CalendarDay DayBack(int back) const;
  [[nodiscard]] Samples SamplesOf(std::uint64_t seed, int back) const;
  /// Whether the day has enough samples to have energy in the ledger.
  [[nodiscard]] bool HasEnergy(std::uint64_t seed, int back) const;
  /// Whether the clocks change on one of the last ten days; the model has no day off then.
  [[nodiscard]] bool ClocksChange() const;

  /// The first seed for which `isWanted(seed)`; throws std::logic_error if there is none.
  template <typename IsWanted>
  std::uint64_t SeedWhere(IsWanted isWanted) const {
    for (std::uint64_t seed = 1; seed < 20'000; ++seed) {
      if (isWanted(seed)) return seed;
    }
    throw std::logic_error("no seed has such days");
  }

 private:
  const Standin::CalendarDay today_;
};

}  // namespace TestSupport
