#pragma once

#include <cstddef>
#include <vector>

#include "ledger/sample_intervals.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// What the energy of a day and of its neighbours needs of the day's list of samples. Energy is
/// watt-hours.
struct DaySummary {
  std::size_t count = 0;  ///< of the samples
  DaySample first;        ///< without a time if there are no samples, and so is the last
  DaySample last;
  /// Of each interval between two samples that counts, in the order of the list. They are added up
  /// only after the link to the day before.
  std::vector<float> intervalsWh;
};

/// Makes the summary of a list.
class DaySummaryMaker final : public SampleIntervals {
 public:
  /// The summary of a list that has ended.
  [[nodiscard]] DaySummary Finish();

 private:
  void TakeInterval(const DaySample& start, const DaySample& end) override;

  std::vector<float> intervalsWh_;
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
