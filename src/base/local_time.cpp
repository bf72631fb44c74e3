#include "base/local_time.h"

#include <array>
#include <bit>

#include "base/local_calendar.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

bool HasSameFields(const DateTime& left, const DateTime& right) {
  using Fields = std::array<std::int32_t, 9>;
  return std::bit_cast<Fields>(left) == std::bit_cast<Fields>(right);
}

bool IsSameTime(const LocalTime& left, const LocalTime& right) {
  return left.instant == right.instant && HasSameFields(left.fields, right.fields);
}

bool TryNormalise(const DateTime& written, LocalTime& time) {
  time.fields = written;
  if (MakeInstant(time.fields) == -1) return false;
  time.fields.tm_hour = written.tm_hour;
  time.instant = InstantOf(time.fields);
  return true;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
