#pragma once

#include <memory>

#include "abi/package_shapes.h"
#include "package_folder.h"

// Part of the stand-in for the package manager.
namespace Standin::Packages {

/// A new object for one package; the caller owns the reference.
Zq::Gantry::Platform::WinRt::IPackage* MakePackage(std::shared_ptr<const PackageFolder> folder);

}  // namespace Standin::Packages
