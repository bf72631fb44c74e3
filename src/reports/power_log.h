#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <list>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

#include "base/calendar.h"
#include "base/time_reader.h"
#include "reports/name_table.h"
#include "reports/power_budget.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// One row of the 30-day store. In a log the texts belong to the log.
struct PowerLogRecord {
  std::string_view Name;         ///< the application's identity in the report, UTF-8
  std::string_view DisplayName;  ///< bytes; empty if no name is known
  LocalTime TimeStamp;
  std::int64_t TotalEnergy = 0;  ///< in the report's own unit, which nothing here interprets
};

/// The time range whose rows count: from a cutoff on, including the cutoff's own second.
class ReportingPeriod {
 public:
  /// The cutoff is `days` steps of 86400 seconds before `now`, both local, with its hour then set
  /// to that of `now`. If the cutoff is outside the calendar, every row with a valid time counts.
  ReportingPeriod(const DateTime& now, std::int32_t days);

  /// A time outside the calendar, whose instant is -1, never counts.
  [[nodiscard]] bool Includes(std::int64_t instant) const {
    return instant != -1 && instant >= firstInstant_;
  }

 private:
  std::int64_t firstInstant_;
};

/// The rows of one conversion in order of insertion, within the limits of the store. Two rows have
/// the same identity if their names have the same bytes and their times the same instant. Used by
/// one thread.
class PowerLog {
 public:
  explicit PowerLog(const PowerStoreLimits& limits = {}) : limits_(limits) {}
  PowerLog(const PowerLog&) = delete;
  PowerLog& operator=(const PowerLog&) = delete;

  /// The row of this identity, or null. Valid until the next Append; the log owns it.
  [[nodiscard]] PowerLogRecord* TryFind(std::string_view name, const LocalTime& time);

  /// Adds a copy of a row whose identity is not in the log; a second row of one identity is
  /// dropped. If the rows exceed the limits, the oldest are removed, and among those of one second
  /// the ones added last. From then on, rows as old as a removed one or older are dropped. A row
  /// that exceeds the limits by itself is dropped and displaces no other.
  void Append(const PowerLogRecord& record);

  /// The rows in order of insertion. The log owns them; removal keeps the others in place.
  [[nodiscard]] const std::list<PowerLogRecord>& Records() const { return records_; }

 private:
  using Row = std::list<PowerLogRecord>::iterator;

  /// A name of at least one row. Equal names are one entry, so that its address stands for it.
  struct NameUse {
    std::size_t uses = 0;
    std::size_t writtenBytes = 0;
  };
  using Names = NameTable<NameUse>;

  /// The instant comes first, since it separates most rows. Ordered, not hashed: others choose the
  /// times, and no choice makes an ordered search slow.
  using Identity = std::pair<std::int64_t, const Names::Entry*>;

  /// What decides which row is removed next.
  struct Age {
    std::int64_t instant;
    std::uint64_t place;  ///< position in order of insertion
    Row row;
  };

  /// Whether `left` is removed after `right`.
  [[nodiscard]] static bool StaysLonger(const Age& left, const Age& right);

  /// Whether one more row of this size stays within the limits.
  [[nodiscard]] bool Fits(std::size_t rowBytes) const;
  [[nodiscard]] bool MakeRoom(std::size_t rowBytes, std::int64_t instant);
  [[nodiscard]] bool TryInsert(Names::Entry& name, Names::Entry& displayName,
                               const PowerLogRecord& record);
  [[nodiscard]] Names::Entry& Use(std::string_view name);
  void Release(Names::Entry& name);
  void OrderByAge();
  void DropOldest();

  PowerStoreLimits limits_;
  std::list<PowerLogRecord> records_;
  std::map<Identity, Row> byIdentity_;
  Names names_;
  std::size_t rowsBytes_ = 0;

  /// A heap with the next row to remove on top. Built when the first row must be removed.
  std::vector<Age> byAge_;
  bool isOrderedByAge_ = false;
  std::uint64_t nextPlace_ = 0;
  /// The newest instant of a removed row: rows up to it are no longer accepted.
  std::int64_t droppedUpTo_ = std::numeric_limits<std::int64_t>::min();
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
