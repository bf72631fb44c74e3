#include "ledger/energy_arithmetic.h"

#include <cmath>

namespace Zq::Gantry::Server::Services::Wattleaf {

float FiniteOrZero(float value) { return std::isfinite(value) ? value : 0.0F; }

float NarrowToFloat(double value) { return FiniteOrZero(static_cast<float>(value)); }

float IntervalEnergyWh(std::int64_t seconds, float watts) {
  if (seconds < 1 || seconds > kLargestIntervalSeconds) return 0.0F;
  return FiniteOrZero(static_cast<float>(seconds) * watts / kSecondsPerHour);
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
