#pragma once

#include <string_view>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Whether an icon file of this display name lands in `directory` itself. Names come from files
/// that an ordinary user may have written: one with a separator, a colon or a zero would let the
/// service overwrite a file elsewhere, and a zero cuts a path short.
bool StaysInDirectory(std::string_view directory, std::string_view displayName);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
