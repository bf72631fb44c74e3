#pragma once

#include <functional>
#include <string>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Reads the logo path from the manifest with this path; leaves `logo` alone where there is none.
using ManifestReader = std::function<void(const std::wstring& manifestPath, std::wstring& logo)>;

/// The logo file of the package in `installedPath`: a file on disk that is a variant of the one
/// that the manifest names. Empty where there is none. A directory that cannot be searched is told
/// on standard error.
std::wstring FindManifestLogo(const std::wstring& installedPath,
                              const ManifestReader& readManifest);

/// A variant of `manifestLogo` in the directory that it names, below `installedPath`: the first
/// file for 100 percent scaling, or else the first one with "44x44" in its name.
std::wstring FindLogoVariant(const std::wstring& installedPath, const std::wstring& manifestLogo);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
