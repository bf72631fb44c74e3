#include "base/local_calendar.h"

#include <time.h>

namespace Zq::Gantry::Server::Services::Wattleaf {

std::int64_t CurrentInstant() { return _time64(nullptr); }

std::int64_t MakeInstant(DateTime& local) {
  std::tm fields = ToTm(local);
  const std::int64_t instant = _mktime64(&fields);
  if (instant < 0) return -1;
  local = FromTm(fields);
  return instant;
}

std::int64_t InstantOf(DateTime local) { return MakeInstant(local); }

DateTime LocalTimeOf(std::int64_t instant) {
  // Some C libraries accept a few hours below zero.
  if (instant < 0) return kNoTime;
  const __time64_t seconds = instant;
  std::tm fields{};
  if (_localtime64_s(&fields, &seconds) != 0) return kNoTime;
  return FromTm(fields);
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
