#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <limits>
#include <string_view>
#include <vector>

#include "base/calendar.h"
#include "reports/power_budget.h"
#include "reports/row_index.h"
#include "reports/row_names.h"
#include "reports/row_time.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// One row of the 30-day store. In a log the texts belong to the log.
struct PowerLogRecord {
  std::string_view Name;         ///< the application's identity in the report, UTF-8
  std::string_view DisplayName;  ///< bytes; empty if no name is known
  RowTime TimeStamp;
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

  /// Adds to the energy of the row of this identity. False if there is no such row.
  [[nodiscard]] bool TryAddEnergy(std::string_view name, std::int64_t instant, std::int64_t energy);

  /// Adds a copy of a row whose identity is not in the log; a second row of one identity is
  /// dropped. If the rows exceed the limits, the oldest are removed, and among those of one second
  /// the ones added last. From then on, rows as old as a removed one or older are dropped. A row
  /// that exceeds the limits by itself is dropped and displaces no other.
  void Append(const PowerLogRecord& record);

  [[nodiscard]] std::size_t Size() const { return rows_.size() - removedRows_; }

  /// Calls `visit` with each row, a PowerLogRecord, in order of insertion.
  template <typename Visitor>
  void ForEach(Visitor visit) const {
    for (const Row& row : rows_) {
      if (row.IsRemoved()) continue;
      visit(PowerLogRecord{names_.TextOf(row.name), names_.TextOf(row.displayName), row.time,
                           row.energy});
    }
  }

 private:
  struct Row {
    static constexpr std::uint32_t kRemoved = 0xFFFFFFFF;

    std::uint32_t name = kRemoved;  ///< a number of RowNames, or kRemoved
    std::uint32_t displayName = 0;
    RowTime time;
    std::int64_t energy = 0;

    [[nodiscard]] bool IsRemoved() const { return name == kRemoved; }
  };

  [[nodiscard]] static RowIndex::Identity IdentityOf(const Row& row) {
    return {row.time.instant, row.name};
  }
  [[nodiscard]] std::size_t BytesOf(const Row& row) const {
    return StoredRowBytes(names_.BytesOf(row.name), names_.BytesOf(row.displayName));
  }

  /// Whether one more row of this size stays within the limits.
  [[nodiscard]] bool Fits(std::size_t rowBytes) const;
  [[nodiscard]] bool MakeRoom(std::size_t rowBytes, std::int64_t instant);
  [[nodiscard]] bool TryInsert(const Row& row);
  [[nodiscard]] auto ByAge() const;
  void OrderByAge();
  void RemoveOldest();
  void ForgetRemovedRows();

  PowerStoreLimits limits_;
  /// Removed rows keep their places until they outnumber the others.
  std::deque<Row> rows_;
  std::size_t removedRows_ = 0;
  RowIndex index_;
  RowNames names_;
  std::size_t rowsBytes_ = 0;  ///< of the rows in the file of the store

  /// The numbers of the rows as a heap with the next row to remove on top. Built when the first row
  /// must be removed.
  std::vector<std::uint32_t> byAge_;
  bool isOrderedByAge_ = false;
  /// The newest instant of a removed row: rows up to it are no longer accepted.
  std::int64_t droppedUpTo_ = std::numeric_limits<std::int64_t>::min();
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
