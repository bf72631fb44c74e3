#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

// The small logo of a packaged application; docs/formats/appx-manifest.md. Any thread.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// A larger manifest counts as unreadable, since the maker of the package chooses its size.
inline constexpr std::int64_t kLargestManifestBytes = std::int64_t{4} * 1024 * 1024;

/// Reads the logo path from the manifest at this path; leaves `logo` unchanged if there is none.
using ManifestReader = std::function<void(const std::wstring& manifestPath, std::wstring& logo)>;

/// The small logo that a manifest names for its first application, relative to the package's
/// directory; an attribute without a value is an empty text. Empty optional if the file cannot be
/// read or parsed, or names no logo. Nothing is logged.
[[nodiscard]] std::optional<std::wstring> TryReadManifestLogo(const std::wstring& manifestPath);

/// The logo file of the package in `installedPath`: a file on disk that is a variant of the one
/// that the manifest names (FindLogoVariant). Empty if there is no such file. Exceptions of
/// `readManifest` propagate.
[[nodiscard]] std::wstring FindManifestLogo(const std::wstring& installedPath,
                                            const ManifestReader& readManifest);

/// A variant of `manifestLogo` in its own directory below `installedPath`: the first file whose
/// name contains "<logo's name>.scale-100", otherwise the first with "44x44", in the order in which
/// the system lists the directory. Empty if there is neither. A directory that cannot be searched
/// is reported on standard error.
[[nodiscard]] std::wstring FindLogoVariant(const std::wstring& installedPath,
                                           const std::wstring& manifestLogo);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
