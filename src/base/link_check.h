#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Whether a path with these attributes (GetFileAttributesW) is a link of any kind; none for a
/// reparse point whose tag cannot be read.
std::optional<bool> TryIsLink(const std::wstring& path, std::uint32_t attributes);

/// The same; a reparse point whose tag cannot be read counts as a link.
bool IsLink(const std::wstring& path, std::uint32_t attributes);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
