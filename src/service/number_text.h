#pragma once

#include <string>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Six digits behind the point, the C locale's point, no grouping, no limit to the length.
std::wstring FloatToWideString(float value);

/// Plain decimal digits with a leading "-" below zero.
std::wstring IntToWideString(int value);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
