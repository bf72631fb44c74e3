#pragma once

#include <cstdint>
#include <string>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Whether a path with these attributes (GetFileAttributesW) is a link of any kind. A reparse point
/// whose tag cannot be had counts as one.
bool IsLink(const std::wstring& path, std::uint32_t attributes);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
