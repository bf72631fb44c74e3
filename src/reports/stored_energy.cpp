#include "reports/stored_energy.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

std::int64_t StoredEnergy(const rapidjson::Value& number) {
  if (number.IsInt64()) return number.GetInt64();
  if (number.IsUint64()) return static_cast<std::int64_t>(number.GetUint64());
  constexpr double kTwoToThe63 = 9223372036854775808.0;
  const double value = number.GetDouble();
  const bool fits = value >= -kTwoToThe63 && value < kTwoToThe63;
  return fits ? static_cast<std::int64_t>(value) : 0;
}

std::int64_t StoredEnergyLow32(const rapidjson::Value& number) {
  return static_cast<std::int32_t>(static_cast<std::uint64_t>(StoredEnergy(number)));
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
