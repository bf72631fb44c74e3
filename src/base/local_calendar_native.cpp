#include "base/local_calendar.h"

#include <ctime>

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

// The last second of the year 3000 in UTC: the Windows C library's calendar ends there.
constexpr std::int64_t kLastInstant = 32535215999;

}  // namespace

std::int64_t CurrentInstant() { return std::time(nullptr); }

std::int64_t MakeInstant(DateTime& local) {
  std::tm fields = ToTm(local);
  const std::int64_t instant = std::mktime(&fields);
  if (instant < 0 || instant > kLastInstant) return -1;
  local = FromTm(fields);
  return instant;
}

std::int64_t InstantOf(DateTime local) { return MakeInstant(local); }

DateTime LocalTimeOf(std::int64_t instant) {
  const std::time_t seconds = instant;
  std::tm fields{};
  if (instant < 0 || instant > kLastInstant) return kNoTime;
  if (localtime_r(&seconds, &fields) == nullptr) return kNoTime;
  return FromTm(fields);
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
