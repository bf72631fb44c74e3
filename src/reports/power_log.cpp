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

PowerLogRecord* PowerLog::TryFind(std::string_view name, const LocalTime& time) {
  const Names::Entry* known = names_.TryFind(name);
  if (known == nullptr) return nullptr;
  const auto found = byIdentity_.find({time.instant, known});
  return found != byIdentity_.end() ? &*found->second : nullptr;
}

void PowerLog::Append(const PowerLogRecord& record) {
  if (record.TimeStamp.instant <= droppedUpTo_) return;
  Names::Entry& name = Use(record.Name);
  Names::Entry& displayName = Use(record.DisplayName);
  if (TryInsert(name, displayName, record)) return;
  Release(name);
  Release(displayName);
}

bool PowerLog::TryInsert(Names::Entry& name, Names::Entry& displayName,
                         const PowerLogRecord& record) {
  const std::int64_t instant = record.TimeStamp.instant;
  const Identity identity{instant, &name};
  auto place = byIdentity_.lower_bound(identity);
  if (place != byIdentity_.end() && place->first == identity) return false;
  const std::size_t bytes =
      StoredRowBytes(name.second.writtenBytes, displayName.second.writtenBytes);
  if (bytes > limits_.rowBytes || kArrayBytes + bytes > limits_.fileBytes) return false;
  if (!Fits(bytes)) {
    if (!MakeRoom(bytes, instant)) return false;
    place = byIdentity_.lower_bound(identity);
  }

  const Row row = records_.insert(
      records_.end(), {name.first, displayName.first, record.TimeStamp, record.TotalEnergy});
  byIdentity_.emplace_hint(place, identity, row);
  rowsBytes_ += bytes;
  const std::uint64_t position = nextPlace_++;
  if (!isOrderedByAge_) return true;
  byAge_.push_back({instant, position, row});
  std::push_heap(byAge_.begin(), byAge_.end(), &StaysLonger);
  return true;
}

PowerLog::Names::Entry& PowerLog::Use(std::string_view name) {
  Names::Entry& entry = names_.FindOrAdd(name, {});
  if (entry.second.uses++ == 0) entry.second.writtenBytes = WrittenBytes(name);
  return entry;
}

void PowerLog::Release(Names::Entry& name) {
  if (--name.second.uses == 0) names_.Erase(name);
}

bool PowerLog::StaysLonger(const Age& left, const Age& right) {
  if (left.instant != right.instant) return left.instant > right.instant;
  return left.place < right.place;
}

bool PowerLog::Fits(std::size_t rowBytes) const {
  return records_.size() < limits_.rows && kArrayBytes + rowsBytes_ + rowBytes <= limits_.fileBytes;
}

/// Removes rows older than `instant` until a new row fits that does not fit now; false if it does
/// not fit even then, and the new row is the one to drop.
bool PowerLog::MakeRoom(std::size_t rowBytes, std::int64_t instant) {
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
    byAge_.push_back({row->TimeStamp.instant, place++, row});
  }
  std::make_heap(byAge_.begin(), byAge_.end(), &StaysLonger);
  isOrderedByAge_ = true;
}

void PowerLog::DropOldest() {
  std::pop_heap(byAge_.begin(), byAge_.end(), &StaysLonger);
  const Age oldest = byAge_.back();
  byAge_.pop_back();
  droppedUpTo_ = oldest.instant;
  Names::Entry& name = *names_.TryFind(oldest.row->Name);
  Names::Entry& displayName = *names_.TryFind(oldest.row->DisplayName);
  rowsBytes_ -= StoredRowBytes(name.second.writtenBytes, displayName.second.writtenBytes);
  byIdentity_.erase({oldest.instant, &name});
  records_.erase(oldest.row);
  Release(name);
  Release(displayName);
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
