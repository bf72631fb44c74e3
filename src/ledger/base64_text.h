#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// The bytes of Base64 text (RFC 4648) as Windows writes it: groups of four characters, each with
/// or without a line end ("\r\n") after it, of which the last may be padded. Empty for any other
/// text, also if the platform could decode it.
[[nodiscard]] std::optional<std::string> TryDecodeBase64(std::string_view text);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
