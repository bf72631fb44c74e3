#pragma once

#include <rapidjson/document.h>

#include <cstdint>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// The whole number in a JSON number: above the signed range its 64 bits as they stand, a fraction
/// cut off, 0 for what no 64 bits hold.
std::int64_t StoredEnergy(const rapidjson::Value& number);

/// The low 32 bits of that, read as signed.
std::int64_t StoredEnergyLow32(const rapidjson::Value& number);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
