#pragma once

#include <memory>

#include "catalogue/installed_package.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// A walk over the packages of all users, asked of the system's package manager. Used and destroyed
/// on the thread that called this, which belongs to the multithreaded apartment until then if it
/// had none.
///
/// Every failure of the runtime is raised as Platform::WinRt::CallFailure, by this and by the walk.
std::unique_ptr<PackageWalk> FindAllPackages();

}  // namespace Zq::Gantry::Server::Services::Wattleaf
