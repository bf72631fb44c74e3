#pragma once

#include <string>

#include "abi/package_shapes.h"
#include "script.h"

// Part of the stand-in for the package manager.
namespace Standin::Packages {

inline constexpr wchar_t kManagerClass[] = L"Windows.Management.Deployment.PackageManager";

/// A new manager of the packages below `root`; the caller owns the reference. Each request for all
/// packages reads the folders again.
Zq::Gantry::Platform::WinRt::IPackageManager* MakeManager(std::wstring root, Script script);

}  // namespace Standin::Packages
