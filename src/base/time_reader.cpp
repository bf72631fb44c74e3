#include "base/time_reader.h"

#include <algorithm>

#include "base/date_text.h"
#include "base/local_calendar.h"
#include "base/time_fields.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

constexpr std::int32_t kSecondsPerHour = 3600;
constexpr std::int32_t kLastSecondOfDay = 86399;

std::int32_t SecondOfDay(const DateTime& time) {
  return time.tm_hour * kSecondsPerHour + time.tm_min * 60 + time.tm_sec;
}

/// A day of some month at a time of day as clocks show it, as opposed to a text that lacks the day
/// or has a leap second.
bool IsPlain(const DateTime& written) { return written.tm_mday > 0 && written.tm_sec < 60; }

/// A time outside the calendar: the fields as read.
LocalTime OutsideCalendar(DateTime written) {
  FillDayOfWeekAndYear(written);
  return {written, -1};
}

/// The time of day `written` added to `base`.
LocalTime Sum(LocalTime base, const DateTime& written) {
  base.fields.tm_hour = written.tm_hour;
  base.fields.tm_min += written.tm_min;
  base.fields.tm_sec += written.tm_sec;
  base.instant += SecondOfDay(written);
  return base;
}

/// What must be added to `written` to get `time`.
LocalTime Difference(LocalTime time, const DateTime& written) {
  time.fields.tm_min -= written.tm_min;
  time.fields.tm_sec -= written.tm_sec;
  time.instant -= SecondOfDay(written);
  return time;
}

}  // namespace

TimeReader::TimeReader(const char* format) : separator_(SeparatorOf(format)) {}

LocalTime TimeReader::Read(const char* text) {
  LocalTime time;
  if (text != nullptr) static_cast<void>(TryRead(text, separator_, time));
  return time;
}

LocalTime TimeReader::Read(const wchar_t* text) {
  LocalTime time;
  if (text == nullptr || TryRead(text, ':', time)) return time;
  time.instant = InstantOf(ParseWideDateTime(time.fields, text));
  return time;
}

template <typename Char>
bool TimeReader::TryRead(const Char* text, char separator, LocalTime& time) {
  DateTime written;
  switch (ReadTimeFields(text, separator, written)) {
    case TimeFields::kNone:
      return true;
    case TimeFields::kSome:
      Convert(written, time);
      return true;
    default:
      return false;
  }
}

void TimeReader::Convert(const DateTime& written, LocalTime& time) {
  const bool isInCalendar =
      IsPlain(written) ? TryConvertPlain(written, time) : TryNormalise(written, time);
  if (!isInCalendar) time = OutsideCalendar(written);
}

bool TimeReader::TryConvertPlain(const DateTime& written, LocalTime& time) {
  return separator_ == '\0' ? dates_.TryNormaliseDate(written, time)
                            : TryAddToStretch(written, time);
}

// What the zone does is never computed here, only asked: the C library normalises the first text of
// a stretch, and both ends of the stretch when its second text is read. The longest stretches have
// 23 hours, because the last hour of a summer day is read one day later.
bool TimeReader::TryAddToStretch(const DateTime& written, LocalTime& time) {
  const std::int64_t date = ((written.tm_year + 1900) * 12 + written.tm_mon) * 31 + written.tm_mday;
  const std::int32_t second = SecondOfDay(written);
  for (std::size_t i = 0; i < kStretchSeconds.size(); ++i) {
    const std::int32_t length = kStretchSeconds[i];
    const std::int64_t key = date * (kLastSecondOfDay / length + 1) + second / length;
    Stretch& stretch = stretches_[i][static_cast<std::size_t>(key) % kStretchesOfALength];
    if (stretch.key != key) {
      if (!TryNormalise(written, time)) return false;
      stretch = {key, Difference(time, written), Stretch::State::kReadOnce};
      return true;
    }
    if (stretch.state == Stretch::State::kReadOnce) {
      stretch.state =
          IsEven(stretch.base, written, length) ? Stretch::State::kEven : Stretch::State::kUneven;
    }
    if (stretch.state == Stretch::State::kEven) {
      time = Sum(stretch.base, written);
      return true;
    }
  }
  return TryNormalise(written, time);
}

/// Whether both ends of the stretch around `written` are as far from `base` as they are written. No
/// zone changes its clocks twice within a few days, so the times between them are too.
bool TimeReader::IsEven(const LocalTime& base, DateTime written, std::int32_t length) {
  const std::int32_t first = SecondOfDay(written) / length * length;
  const std::int32_t last = std::min(first + length - 1, kLastSecondOfDay);
  for (const std::int32_t end : {first, last}) {
    written.tm_hour = end / kSecondsPerHour;
    written.tm_min = end / 60 % 60;
    written.tm_sec = end % 60;
    LocalTime time;
    if (!TryNormalise(written, time) || !IsSameTime(time, Sum(base, written))) return false;
  }
  return true;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
