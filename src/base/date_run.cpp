#include "base/date_run.h"

#include <algorithm>
#include <cstdint>

#include "base/local_calendar.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

using namespace std::chrono;

// No zone changes its clocks twice within so many days.
constexpr days kLongestGap{6};
constexpr days kLongestExtension{240};

year_month_day DateOf(const DateTime& written) {
  return year(written.tm_year + 1900) / month(static_cast<unsigned>(written.tm_mon + 1)) /
         day(static_cast<unsigned>(written.tm_mday));
}

DateTime FieldsOf(sys_days date) {
  const year_month_day parts(date);
  DateTime fields;
  fields.tm_mday = static_cast<std::int32_t>(static_cast<unsigned>(parts.day()));
  fields.tm_mon = static_cast<std::int32_t>(static_cast<unsigned>(parts.month())) - 1;
  fields.tm_year = static_cast<int>(parts.year()) - 1900;
  return fields;
}

}  // namespace

bool DateRun::TryNormaliseDate(const DateTime& written, LocalTime& time) {
  const year_month_day date = DateOf(written);
  if (!date.ok()) return TryNormalise(written, time);  // such as the 31st of April
  const Day day(date);
  if (Contains(day) || TryExtendTo(day)) {
    time = At(day);
    return true;
  }
  if (!TryNormalise(written, time)) return false;
  Begin(day, time);
  return true;
}

// Near the last run, on the other side of a clock change, the next one is probably as long.
void DateRun::Begin(Day day, const LocalTime& time) {
  const bool isNear = day >= first_ - kLongestGap && day <= last_ + kLongestGap;
  expectedLength_ = isNear ? std::max(expectedLength_, Length()) : Days(0);
  first_ = last_ = baseDay_ = day;
  base_ = time;
  // A midnight that the clocks do not show has no run.
  if (!IsSameTime(At(day), base_) || !IsShown(day)) last_ -= Days(1);
}

// A run grows by its own length, so that dates that are far from each other cost no more than
// asking for each.
bool DateRun::TryExtendTo(Day day) {
  if (Length() == Days(0)) return false;
  const bool isLater = day > last_;
  if ((isLater ? day - last_ : first_ - day) > kLongestGap) return false;

  Day& end = isLater ? last_ : first_;
  const Day newEnd = LastBeforeChange(
      end, Days(isLater ? 1 : -1),
      std::clamp(std::max(Length(), expectedLength_), kLongestGap, kLongestExtension));
  if (isLater ? newEnd < day : newEnd > day) return false;
  LocalTime time;
  if (!TryNormalise(FieldsOf(newEnd), time) || !IsSameTime(time, At(newEnd))) return false;
  end = newEnd;
  return true;
}

DateRun::Day DateRun::LastBeforeChange(Day end, Days step, Days most) const {
  Days reached{0};
  for (const Days gap : {kLongestGap, Days(1)}) {
    while (reached + gap <= most && IsShown(end + (reached + gap) * step.count())) reached += gap;
  }
  return end + reached * step.count();
}

bool DateRun::IsShown(Day day) const {
  const LocalTime time = At(day);
  return HasSameFields(LocalTimeOf(time.instant), time.fields);
}

LocalTime DateRun::At(Day day) const {
  const Days distance = day - baseDay_;
  LocalTime time = base_;
  const DateTime date = FieldsOf(day);
  time.fields.tm_mday = date.tm_mday;
  time.fields.tm_mon = date.tm_mon;
  time.fields.tm_year = date.tm_year;
  time.fields.tm_wday = static_cast<std::int32_t>(weekday(day).c_encoding());
  const Day newYear(year(date.tm_year + 1900) / January / 1);
  time.fields.tm_yday = static_cast<std::int32_t>((day - newYear).count());
  time.instant += distance.count() * kSecondsPerDay;
  return time;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
