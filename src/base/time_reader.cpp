#include "base/time_reader.h"

#include <algorithm>
#include <bit>
#include <string_view>

#include "base/date_text.h"
#include "base/local_calendar.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

constexpr std::int32_t kSecondsPerHour = 3600;
constexpr std::int32_t kLastSecondOfDay = 86399;

char SeparatorOf(std::string_view format) {
  if (format == kSampleTimeFormat) return 'T';
  if (format == kTimeStampFormat) return ':';
  return '\0';
}

template <int count, typename Char>
bool ReadDigits(const Char* text, std::int32_t& value) {
  std::uint32_t sum = 0;
  for (int i = 0; i < count; ++i) {
    const std::uint32_t digit = static_cast<std::uint32_t>(text[i]) - U'0';
    if (digit > 9) return false;
    sum = sum * 10 + digit;
  }
  value = static_cast<std::int32_t>(sum);
  return true;
}

/// The digits of "2024-03-01", each field in its range.
template <typename Char>
bool ReadDate(const Char* text, DateTime& written) {
  std::int32_t year = 0;
  std::int32_t month = 0;
  if (!ReadDigits<4>(text, year) || text[4] != Char('-') || !ReadDigits<2>(text + 5, month) ||
      text[7] != Char('-') || !ReadDigits<2>(text + 8, written.tm_mday)) {
    return false;
  }
  written.tm_year = year - 1900;
  written.tm_mon = month - 1;
  return month >= 1 && month <= 12 && written.tm_mday >= 1 && written.tm_mday <= 31;
}

/// The digits of "10:30:15", each field in its range.
template <typename Char>
bool ReadTimeOfDay(const Char* text, DateTime& written) {
  if (!ReadDigits<2>(text, written.tm_hour) || text[2] != Char(':') ||
      !ReadDigits<2>(text + 3, written.tm_min) || text[5] != Char(':') ||
      !ReadDigits<2>(text + 6, written.tm_sec)) {
    return false;
  }
  return written.tm_hour <= 23 && written.tm_min <= 59 && written.tm_sec <= 59;
}

/// Reads a text that begins with a time of fixed width, as std::get_time would: it does not look at
/// what follows. False for any other text.
template <typename Char>
bool ReadFixedWidth(const Char* text, char separator, DateTime& written) {
  if (text == nullptr || !ReadDate(text, written)) return false;
  if (separator == '\0') return true;
  return text[10] == static_cast<Char>(separator) && ReadTimeOfDay(text + 11, written);
}

std::int32_t SecondOfDay(const DateTime& time) {
  return time.tm_hour * kSecondsPerHour + time.tm_min * 60 + time.tm_sec;
}

/// What ParseDateTime and InstantOf make of the fields that were read.
bool TryNormalise(const DateTime& written, LocalTime& time) {
  time.fields = written;
  if (MakeInstant(time.fields) == -1) return false;
  time.fields.tm_hour = written.tm_hour;
  time.instant = InstantOf(time.fields);
  return true;
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

bool IsSame(const LocalTime& left, const LocalTime& right) {
  using Fields = std::array<std::int32_t, 9>;
  return left.instant == right.instant &&
         std::bit_cast<Fields>(left.fields) == std::bit_cast<Fields>(right.fields);
}

}  // namespace

TimeReader::TimeReader(const char* format) : format_(format), separator_(SeparatorOf(format)) {}

LocalTime TimeReader::Read(const char* text) {
  LocalTime time;
  DateTime written;
  if (ReadFixedWidth(text, separator_, written) && TryConvert(written, time)) return time;
  time.instant = InstantOf(ParseDateTime(time.fields, text, format_));
  return time;
}

LocalTime TimeReader::Read(const wchar_t* text) {
  LocalTime time;
  DateTime written;
  if (ReadFixedWidth(text, ':', written) && TryConvert(written, time)) return time;
  time.instant = InstantOf(ParseWideDateTime(time.fields, text));
  return time;
}

// What the zone does is never computed here, only asked: the C library normalises the first text of
// a stretch, and both ends of the stretch when its second text is read. The longest stretches have
// 23 hours, because the last hour of a summer day is read one day later.
bool TimeReader::TryConvert(const DateTime& written, LocalTime& time) {
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
    if (!TryNormalise(written, time) || !IsSame(time, Sum(base, written))) return false;
  }
  return true;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
