#pragma once

// Stand-in: the days that the collector has written, as encrypted files and as plain truth.

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "calendar_days.h"
#include "collector_settings.h"

namespace Standin {

/// One sample exactly as it stands in a file. `power` is empty where the sample has none.
struct WrittenSample {
  std::string type;
  std::string time;
  std::string power;
};

class SampleStore {
 public:
  explicit SampleStore(CollectorSettings settings) : settings_(std::move(settings)) {}

  /// Writes the days up to and including that of the settings' "now".
  void WriteFirstDays();
  /// Completes the day that was the current one, adds the days that have begun since, and writes
  /// the current one up to `now`. Leaves the files of all other days alone, deleted ones too.
  void Advance(std::int64_t now);

 private:
  void WriteDay(const CalendarDay& day, std::int64_t now);
  void WriteTruth() const;

  CollectorSettings settings_;
  CalendarDay current_;
  std::map<std::string, std::vector<WrittenSample>> days_;  // by date
};

}  // namespace Standin
