#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace WattleafHost {

/// The largest file that becomes part of a page.
inline constexpr std::size_t kMostIconBytes = std::size_t{256} * 1024;

/// "data:image/png;base64,..."; empty if `bytes` do not begin as a PNG file does, or are more than
/// kMostIconBytes.
[[nodiscard]] std::string PngDataUri(std::string_view bytes);

}  // namespace WattleafHost
