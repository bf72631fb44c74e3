#pragma once

#include <cstdint>
#include <list>
#include <map>
#include <string_view>
#include <utility>

#include "reports/power_log_record.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// The rows of one conversion in order of insertion. Two rows are the same row if their names have
/// the same bytes and their times the same instant.
class PowerLog {
 public:
  PowerLog() = default;
  PowerLog(const PowerLog&) = delete;
  PowerLog& operator=(const PowerLog&) = delete;

  /// The first row of that identity; null where there is none. The row stays where it is.
  PowerLogRecord* TryFind(std::string_view name, const DateTime& time);

  void Append(PowerLogRecord record);

  const std::list<PowerLogRecord>& Records() const { return records_; }

 private:
  /// Instant first: it tells most rows apart without looking at a name. Ordered, not hashed: names
  /// are chosen by others, and no choice of theirs makes an ordered search slow.
  using Identity = std::pair<std::int64_t, std::string_view>;

  std::list<PowerLogRecord> records_;
  std::map<Identity, PowerLogRecord*> byIdentity_;  // the names belong to the rows
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
