#pragma once

#include <cstdint>
#include <string>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// `_wtoi`, alike on every system: white space and a sign may stand before the digits, anything
/// behind them is ignored. 0 for what is no number; a number out of range is the nearest in range.
std::int32_t DecimalInt32(const std::wstring& text);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
