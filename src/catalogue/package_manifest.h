#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// A larger manifest counts as unreadable: whoever made the package wrote it.
inline constexpr std::int64_t kLargestManifestBytes = 4 * 1024 * 1024;

/// The small logo that a manifest names for its first application, relative to the package's
/// directory; an attribute without a value is an empty text. Nothing where the file cannot be read
/// or parsed, or names none.
std::optional<std::wstring> TryReadManifestLogo(const std::wstring& manifestPath);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
