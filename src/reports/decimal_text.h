#pragma once

#include <cstdint>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// The number at the start of a zero-terminated text, as `_wtoi` documents it: ASCII white space, a
/// sign and digits; the rest of the text is ignored. 0 for a text without digits. A number that
/// does not fit becomes the nearest 32-bit one.
[[nodiscard]] std::int32_t DecimalNumber(const wchar_t* text);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
