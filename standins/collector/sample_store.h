#pragma once

// Stand-in: the days that the collector has written, as encrypted files and, for tests, in one file
// of plain text.

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "calendar_days.h"
#include "collector_settings.h"
#include "sample_file.h"

namespace Standin {

/// Writes the samples of the model as the files of the data folder. Throws std::runtime_error if a
/// file cannot be written.
class SampleStore {
 public:
  explicit SampleStore(CollectorSettings settings) : settings_(std::move(settings)) {}

  /// Writes the days up to and including that of the settings' "now".
  void WriteFirstDays();
  /// Completes the day that was the current one, adds the days that have begun since, and writes
  /// the current one up to `now`. Does not touch the files of other days, and does not write a
  /// deleted one again.
  void Advance(std::int64_t now);

 private:
  void WriteDay(const CalendarDay& day, std::int64_t now);
  void WriteTruth() const;

  CollectorSettings settings_;
  CalendarDay current_;
  std::map<std::string, std::vector<WrittenSample>> days_;  // by date
};

}  // namespace Standin
