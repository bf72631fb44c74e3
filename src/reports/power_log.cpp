#include "reports/power_log.h"

#include <algorithm>
#include <iterator>

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

bool ReportingPeriod::Includes(const DateTime& time) const {
  const std::int64_t instant = InstantOf(time);
  return instant != -1 && instant >= firstInstant_;
}

PowerLogRecord* PowerLog::TryFind(std::string_view name, const DateTime& time) {
  const auto found = byIdentity_.find({InstantOf(time), name});
  return found != byIdentity_.end() ? &*found->second : nullptr;
}

void PowerLog::Append(PowerLogRecord record) {
  const std::int64_t instant = InstantOf(record.TimeStamp);
  if (instant <= droppedUpTo_ || byIdentity_.contains({instant, record.Name})) return;
  const std::size_t bytes = StoredRowBytes(record);
  const bool isTooLarge = bytes > limits_.rowBytes || kArrayBytes + bytes > limits_.fileBytes;
  if (isTooLarge || !MakeRoom(bytes, instant)) return;

  const Row row = records_.insert(records_.end(), std::move(record));
  byIdentity_.try_emplace({instant, row->Name}, row);
  rowsBytes_ += bytes;
  const std::uint64_t place = nextPlace_++;
  if (!isOrderedByAge_) return;
  byAge_.push_back({instant, place, row});
  std::push_heap(byAge_.begin(), byAge_.end(), &StaysLonger);
}

bool PowerLog::StaysLonger(const Age& left, const Age& right) {
  if (left.instant != right.instant) return left.instant > right.instant;
  return left.place < right.place;
}

bool PowerLog::Fits(std::size_t rowBytes) const {
  return records_.size() < limits_.rows && kArrayBytes + rowsBytes_ + rowBytes <= limits_.fileBytes;
}

/// Removes rows older than `instant` until the new row fits; false if it does not fit even then,
/// and the new row is the one to drop.
bool PowerLog::MakeRoom(std::size_t rowBytes, std::int64_t instant) {
  if (Fits(rowBytes)) return true;
  if (!isOrderedByAge_) OrderByAge();
  while (!byAge_.empty() && byAge_.front().instant < instant) {
    DropOldest();
    if (Fits(rowBytes)) return true;
  }
  droppedUpTo_ = instant;
  return false;
}

/// No row has been removed yet, so the positions are 0, 1, 2 and so on.
void PowerLog::OrderByAge() {
  byAge_.reserve(limits_.rows);
  std::uint64_t place = 0;
  for (Row row = records_.begin(); row != records_.end(); ++row) {
    byAge_.push_back({InstantOf(row->TimeStamp), place++, row});
  }
  std::make_heap(byAge_.begin(), byAge_.end(), &StaysLonger);
  isOrderedByAge_ = true;
}

void PowerLog::DropOldest() {
  std::pop_heap(byAge_.begin(), byAge_.end(), &StaysLonger);
  const Age oldest = byAge_.back();
  byAge_.pop_back();
  droppedUpTo_ = oldest.instant;
  rowsBytes_ -= StoredRowBytes(*oldest.row);
  byIdentity_.erase({oldest.instant, oldest.row->Name});
  records_.erase(oldest.row);
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
