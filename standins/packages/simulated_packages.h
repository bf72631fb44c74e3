#pragma once

#include <memory>
#include <string>

#include "abi/package_shapes.h"
#include "package_folder.h"
#include "package_script.h"

// Part of the stand-in for the package manager.
namespace Standin::Packages {

inline constexpr wchar_t kManagerClass[] = L"Windows.Management.Deployment.PackageManager";

/// A new manager of the packages below `root`; the caller owns the reference. Each FindPackages
/// reads the folders again.
[[nodiscard]] Zq::Gantry::Platform::WinRt::IPackageManager* MakeManager(std::wstring root,
                                                                        Script script);

/// A new object for one package; the caller owns the reference.
[[nodiscard]] Zq::Gantry::Platform::WinRt::IPackage* MakePackage(
    std::shared_ptr<const PackageFolder> folder);

}  // namespace Standin::Packages
