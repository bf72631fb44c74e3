#include "reports/power_log.h"

#include "ledger/local_calendar.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

PowerLogRecord* PowerLog::TryFind(std::string_view name, const DateTime& time) {
  const auto found = byIdentity_.find({InstantOf(time), name});
  return found != byIdentity_.end() ? found->second : nullptr;
}

void PowerLog::Append(PowerLogRecord record) {
  PowerLogRecord& row = records_.emplace_back(std::move(record));
  // A second row of one identity is not entered, so that the first one is found.
  byIdentity_.try_emplace({InstantOf(row.TimeStamp), row.Name}, &row);
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
