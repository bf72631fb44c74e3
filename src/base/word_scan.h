#pragma once

#include <cstddef>
#include <string_view>

// Passing over long texts eight bytes at a time. The functions of the standard library do the same
// with one byte at a time in some C libraries.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// Whether both have the same length and the same bytes.
[[nodiscard]] bool IsSameText(std::string_view left, std::string_view right);

/// The place of the first zero byte; std::string_view::npos if there is none.
[[nodiscard]] std::size_t FindZeroByte(std::string_view text);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
