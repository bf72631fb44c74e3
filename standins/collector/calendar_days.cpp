// Stand-in: local calendar days for the collector.

#include "calendar_days.h"

#include <time.h>

#include <array>
#include <chrono>

namespace Standin {

namespace {

std::tm LocalFields(std::int64_t instant) {
  const __time64_t seconds = instant;
  std::tm fields{};
  _localtime64_s(&fields, &seconds);
  return fields;
}

/// The instant of local midnight; `day` may lie outside the month.
std::int64_t Midnight(int year, int month, int day) {
  std::tm fields{};
  fields.tm_year = year;
  fields.tm_mon = month;
  fields.tm_mday = day;
  fields.tm_isdst = -1;  // the C library decides whether it is summer time
  return _mktime64(&fields);
}

std::string Format(const std::tm& fields, const char* format) {
  std::array<char, 64> text{};
  return {text.data(), std::strftime(text.data(), text.size(), format, &fields)};
}

CalendarDay DayOfFields(const std::tm& fields) {
  using namespace std::chrono;
  CalendarDay day;
  day.begin = Midnight(fields.tm_year, fields.tm_mon, fields.tm_mday);
  day.end = Midnight(fields.tm_year, fields.tm_mon, fields.tm_mday + 1);
  const auto date = year(fields.tm_year + 1900) / (fields.tm_mon + 1) / fields.tm_mday;
  day.number = sys_days(date).time_since_epoch().count();
  day.date = Format(fields, "%Y-%m-%d");
  return day;
}

}  // namespace

CalendarDay DayOf(std::int64_t instant) { return DayOfFields(LocalFields(instant)); }

CalendarDay DayAfter(const CalendarDay& day, int days) {
  const std::tm fields = LocalFields(day.begin);
  // Noon lies in the wanted day even if the clocks change at midnight.
  const std::int64_t noon =
      Midnight(fields.tm_year, fields.tm_mon, fields.tm_mday + days) + 12 * 3600;
  return DayOf(noon);
}

std::string LocalTimeText(std::int64_t instant) {
  return Format(LocalFields(instant), "%Y-%m-%dT%H:%M:%S");
}

}  // namespace Standin
