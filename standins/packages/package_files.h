#pragma once

#include <filesystem>
#include <string>

#include "installed_applications.h"

// Part of the stand-in for the package manager.
namespace Standin::Packages {

/// The name of a package's folder: name, version, architecture and family suffix.
[[nodiscard]] std::string FullName(const PackagedApp& app);

/// Writes the package's folder below `root`: its "package.txt", its manifest and its logos. Throws
/// std::filesystem::filesystem_error or std::runtime_error on failure.
void WritePackage(const std::filesystem::path& root, const PackagedApp& app);

}  // namespace Standin::Packages
