#include "reports/power_log.h"

#include <algorithm>
#include <numeric>

#include "base/calendar.h"
#include "base/local_calendar.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

/// The opening bracket. The closing one takes the place of the last row's comma.
constexpr std::size_t kArrayBytes = 1;

/// The negative in 32-bit arithmetic, where the smallest number is its own negative.
std::int32_t Negated(std::int32_t days) {
  return static_cast<std::int32_t>(0U - static_cast<std::uint32_t>(days));
}

}  // namespace

ReportingPeriod::ReportingPeriod(const DateTime& now, std::int32_t days)
    : firstInstant_(InstantOf(ShiftKeepingHour(now, Negated(days) * kSecondsPerDay))) {}

/// Compares two rows by number: whether the first one is removed after the second.
auto PowerLog::ByAge() const {
  return [this](std::uint32_t left, std::uint32_t right) {
    const std::int64_t leftInstant = rows_[left].time.instant;
    const std::int64_t rightInstant = rows_[right].time.instant;
    return leftInstant != rightInstant ? leftInstant > rightInstant : left < right;
  };
}

bool PowerLog::TryAddEnergy(std::string_view name, std::int64_t instant, std::int64_t energy) {
  const auto known = names_.TryFind(name);
  if (!known) return false;
  const std::uint32_t row = index_.Find({instant, *known});
  if (row == RowIndex::kNoRow) return false;
  rows_[row].energy += energy;
  return true;
}

void PowerLog::Append(const PowerLogRecord& record) {
  if (record.TimeStamp.instant <= droppedUpTo_) return;
  const Row row{names_.Use(record.Name), names_.Use(record.DisplayName), record.TimeStamp,
                record.TotalEnergy};
  if (TryInsert(row)) return;
  names_.Release(row.name);
  names_.Release(row.displayName);
}

bool PowerLog::TryInsert(const Row& row) {
  if (index_.Find(IdentityOf(row)) != RowIndex::kNoRow) return false;
  const std::size_t bytes = BytesOf(row);
  if (bytes > limits_.rowBytes || kArrayBytes + bytes > limits_.fileBytes) return false;
  if (!Fits(bytes) && !MakeRoom(bytes, row.time.instant)) return false;

  const auto number = static_cast<std::uint32_t>(rows_.size());
  rows_.push_back(row);
  index_.Set(IdentityOf(row), number);
  rowsBytes_ += bytes;
  if (!isOrderedByAge_) return true;
  byAge_.push_back(number);
  std::push_heap(byAge_.begin(), byAge_.end(), ByAge());
  return true;
}

bool PowerLog::Fits(std::size_t rowBytes) const {
  return Size() < limits_.rows && kArrayBytes + rowsBytes_ + rowBytes <= limits_.fileBytes;
}

/// Removes rows older than `instant` until a new row fits that does not fit now; false if it does
/// not fit even then, and the new row is the one to drop.
bool PowerLog::MakeRoom(std::size_t rowBytes, std::int64_t instant) {
  if (!isOrderedByAge_) OrderByAge();
  while (!byAge_.empty() && rows_[byAge_.front()].time.instant < instant) {
    RemoveOldest();
    if (Fits(rowBytes)) return true;
  }
  droppedUpTo_ = instant;
  return false;
}

/// No row is marked as removed when this is called.
void PowerLog::OrderByAge() {
  byAge_.reserve(limits_.rows);
  byAge_.resize(rows_.size());
  std::iota(byAge_.begin(), byAge_.end(), 0U);
  std::make_heap(byAge_.begin(), byAge_.end(), ByAge());
  isOrderedByAge_ = true;
}

void PowerLog::RemoveOldest() {
  std::pop_heap(byAge_.begin(), byAge_.end(), ByAge());
  Row& oldest = rows_[byAge_.back()];
  byAge_.pop_back();
  droppedUpTo_ = oldest.time.instant;
  rowsBytes_ -= BytesOf(oldest);
  index_.Erase(IdentityOf(oldest));
  names_.Release(oldest.name);
  names_.Release(oldest.displayName);
  oldest.name = Row::kRemoved;
  if (++removedRows_ > Size()) ForgetRemovedRows();
}

void PowerLog::ForgetRemovedRows() {
  std::erase_if(rows_, [](const Row& row) { return row.IsRemoved(); });
  removedRows_ = 0;
  std::uint32_t number = 0;
  for (const Row& row : rows_) index_.Set(IdentityOf(row), number++);
  OrderByAge();
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
