#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "ledger/day_summary.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// The summaries of the days that a pass read last, so that a text that it reads again need not be
/// parsed again. A pass goes back in time and reads a day up to three times: as the day before
/// another, as itself, and as the day after another. So of too many days the latest is dropped.
class RecentDays {
 public:
  static constexpr std::size_t kMostDays = 3;
  /// Only one text that is longer is kept.
  static constexpr std::size_t kLongTextBytes = std::size_t{4} * 1024 * 1024;

  /// The summary of the samples in a file, whose path names its day; null if the file has no list
  /// that parses. The file is read each time, and parsed unless a text that is kept is the same.
  [[nodiscard]] std::shared_ptr<const DaySummary> Read(const std::wstring& path);

 private:
  struct Day {
    std::wstring path;
    std::string text;
    std::shared_ptr<const DaySummary> summary;
  };

  /// Drops the days in whose place one with such a text is kept. False if it is not kept itself.
  [[nodiscard]] bool MakeRoom(const std::wstring& path, std::string_view text);

  std::vector<Day> days_;  ///< the earliest first
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
