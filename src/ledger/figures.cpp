#include "ledger/figures.h"

#include "base/calendar.h"
#include "ledger/energy_arithmetic.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

constexpr int kAveragedDays = 7;

}  // namespace

float AverageDayEnergyWh(const DateTime& today, const PowerLedger& ledger) {
  float sumWh = 0.0F;
  DateTime day = today;
  for (int i = 0; i < kAveragedDays; ++i) {
    const auto entry = ledger.find(day);
    if (entry != ledger.end()) sumWh += entry->second;
    day = ShiftKeepingHour(day, -kSecondsPerDay);
  }
  return FiniteOrZero(sumWh / static_cast<float>(kAveragedDays));
}

float TreesSaved(float averageWh) { return averageWh * 365.0F * 3.0F / 1000.0F / 300.0F; }

}  // namespace Zq::Gantry::Server::Services::Wattleaf
