#include "text/local_moment.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>

#include "base/local_calendar.h"

namespace WattleafHost {

namespace {

using Zq::Gantry::Server::Services::Wattleaf::DateTime;
using Zq::Gantry::Server::Services::Wattleaf::InstantOf;
using Zq::Gantry::Server::Services::Wattleaf::LocalTimeOf;

constexpr int kFirstYear = 1900;

/// How far local time is ahead of UTC at this instant.
std::int64_t OffsetSeconds(const DateTime& local, std::int64_t instant) {
  const auto asUtc = DateOf(local) + std::chrono::hours(local.tm_hour) +
                     std::chrono::minutes(local.tm_min) + std::chrono::seconds(local.tm_sec);
  return asUtc.time_since_epoch().count() - instant;
}

bool IsHourOf(std::int64_t instant, const DateTime& wanted) {
  const DateTime time = LocalTimeOf(instant);
  return time.tm_year == wanted.tm_year && time.tm_mon == wanted.tm_mon &&
         time.tm_mday == wanted.tm_mday && time.tm_hour == wanted.tm_hour;
}

}  // namespace

std::string IsoTime(std::int64_t instant) {
  const DateTime local = LocalTimeOf(instant);
  if (local.tm_mday < 1) return {};
  const std::int64_t offset = OffsetSeconds(local, instant);
  const long long minutes = std::llabs(offset) / 60;
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "T%02d:%02d:%02d%c%02lld:%02lld", local.tm_hour,
                local.tm_min, local.tm_sec, offset < 0 ? '-' : '+', minutes / 60, minutes % 60);
  return IsoDate(DateOf(local)) + text.data();
}

std::string IsoDate(std::chrono::sys_days date) {
  const std::chrono::year_month_day day(date);
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02u-%02u", static_cast<int>(day.year()),
                static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()));
  return text.data();
}

std::chrono::sys_days DateOf(const DateTime& time) {
  using namespace std::chrono;
  return sys_days(year(time.tm_year + kFirstYear) / month(static_cast<unsigned>(time.tm_mon + 1)) /
                  1) +
         days(time.tm_mday - 1);
}

std::int64_t FirstInstantOf(std::chrono::sys_days date, int hour) {
  const std::chrono::year_month_day day(date);
  DateTime time;
  time.tm_year = static_cast<int>(day.year()) - kFirstYear;
  time.tm_mon = static_cast<int>(static_cast<unsigned>(day.month())) - 1;
  time.tm_mday = static_cast<int>(static_cast<unsigned>(day.day()));
  time.tm_hour = hour;
  const std::int64_t standard = InstantOf(time);
  DateTime summer = time;
  summer.tm_isdst = 1;
  const std::int64_t daylight = InstantOf(summer);
  // An hour that exists has one or both of them. One that does not is standard time on clocks that
  // show daylight saving time already, and so names the moment of the change.
  if (!IsHourOf(daylight, time)) return standard;
  return IsHourOf(standard, time) ? std::min(standard, daylight) : daylight;
}

}  // namespace WattleafHost
