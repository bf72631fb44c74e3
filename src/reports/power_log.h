#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <list>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

#include "reports/power_budget.h"
#include "reports/power_log_record.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// The rows of one conversion in order of insertion, never more than the store may hold. Two rows
/// are the same row if their names have the same bytes and their times the same instant.
class PowerLog {
 public:
  explicit PowerLog(const PowerStoreLimits& limits = {}) : limits_(limits) {}
  PowerLog(const PowerLog&) = delete;
  PowerLog& operator=(const PowerLog&) = delete;

  /// The row of that identity; null if there is none. Valid until the next Append.
  PowerLogRecord* TryFind(std::string_view name, const DateTime& time);

  /// Adds a row whose identity is not in the log; a second row of one identity is dropped. If the
  /// rows exceed the limits, the oldest go, and of one second those added last. What has gone
  /// stays away: a row of that second or an older one is dropped from then on. A row that exceeds
  /// the limits alone is dropped and displaces no other.
  void Append(PowerLogRecord record);

  const std::list<PowerLogRecord>& Records() const { return records_; }

 private:
  using Row = std::list<PowerLogRecord>::iterator;

  /// Instant first: it tells most rows apart without looking at a name. Ordered, not hashed: names
  /// are chosen by others, and no choice of theirs makes an ordered search slow.
  using Identity = std::pair<std::int64_t, std::string_view>;

  struct Age {
    std::int64_t instant;
    std::uint64_t place;  ///< in order of insertion
    Row row;
  };

  /// True if `left` stays longer than `right`.
  static bool StaysLonger(const Age& left, const Age& right);

  bool Fits(std::size_t rowBytes) const;
  bool MakeRoom(std::size_t rowBytes, std::int64_t instant);
  void OrderByAge();
  void DropOldest();

  PowerStoreLimits limits_;
  std::list<PowerLogRecord> records_;
  std::map<Identity, Row> byIdentity_;  // the names belong to the rows
  std::size_t rowsBytes_ = 0;

  /// A heap with the row that goes next on top, made when the first row must go.
  std::vector<Age> byAge_;
  bool isOrderedByAge_ = false;
  std::uint64_t nextPlace_ = 0;
  std::int64_t droppedUpTo_ = std::numeric_limits<std::int64_t>::min();
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
