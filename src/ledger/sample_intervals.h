#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "base/date_text.h"
#include "base/json_rows.h"
#include "base/time_reader.h"
#include "ledger/sample_energy.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// What is kept of a sample.
struct DaySample {
  bool isCounted = false;
  float watts = 0.0F;
  std::optional<SampleTime> time;
};

/// Receives the samples of a day, and passes on each interval that begins at a counted sample other
/// than the first one. Reads only the times that an interval or a neighbouring day may need.
class SampleIntervals : public JsonRowSink {
 public:
  void Take(JsonRow row) final;

  /// Of the samples that were received, also within TakeInterval.
  [[nodiscard]] std::size_t Count() const { return count_; }
  [[nodiscard]] const DaySample& First() const { return first_; }
  /// The last sample with its time.
  [[nodiscard]] DaySample ReadLast();

 private:
  /// `start` and `end` have their times.
  virtual void TakeInterval(const DaySample& start, const DaySample& end) = 0;

  TimeReader times_{kSampleTimeFormat};
  std::size_t count_ = 0;
  DaySample first_;
  DaySample last_;
  std::optional<std::string> unreadTime_;  ///< that of the last sample, if it was not read
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
