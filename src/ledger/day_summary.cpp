#include "ledger/day_summary.h"

#include <utility>

namespace Zq::Gantry::Server::Services::Wattleaf {

DaySummary DaySummaryMaker::Finish() {
  return {Count(), First(), ReadLast(), std::move(intervalsWh_)};
}

void DaySummaryMaker::TakeInterval(const DaySample& start, const DaySample& end) {
  intervalsWh_.push_back(EnergyBetweenWh(start.time, end.time, start.watts));
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
