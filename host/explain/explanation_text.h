#pragma once

#include <optional>
#include <string>
#include <vector>

#include "days/sample_file.h"
#include "explain/day_explanation.h"
#include "explain/ledger_comparison.h"

namespace WattleafHost {

/// All of `explain DAY`. Texts are UTF-8.
struct DayReport {
  std::string version;            ///< of the program
  std::string date;               ///< "2026-11-22"
  std::vector<SampleFile> files;  ///< in the order in which they were read
  DayExplanation day;
  LedgerState ledger = LedgerState::kAbsent;
  std::optional<float> bookedWh;
  LedgerRelation relation = LedgerRelation::kNoLedger;
};

/// All of `explain DAY HOUR`.
struct HourReport {
  std::string version;
  std::string date;
  int hour = 0;
  std::vector<SampleFile> files;
  HourExplanation hours;
};

/// For people: neighbouring intervals with the same fate are one line, unless `eachInterval`.
[[nodiscard]] std::string ToText(const DayReport& report, bool eachInterval);
[[nodiscard]] std::string ToText(const HourReport& report, bool eachInterval);

/// One object on one line, with each interval.
[[nodiscard]] std::string ToJson(const DayReport& report);
[[nodiscard]] std::string ToJson(const HourReport& report);

}  // namespace WattleafHost
