#include "base/date_time.h"

#include "base/local_calendar.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

bool operator<(const DateTime& left, const DateTime& right) {
  return InstantOf(left) < InstantOf(right);
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
