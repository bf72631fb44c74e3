#pragma once

#include <cstdint>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// The number at the start of a text, as `_wtoi` is documented: white space, a sign and digits, of
/// ASCII alone; what follows is ignored. 0 for a text without digits; a number beyond 32 bits is
/// the largest or the smallest there is.
std::int32_t DecimalNumber(const wchar_t* text);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
