#pragma once

#include <memory>

#include "catalogue/packaged_apps.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// A walk over the packages of all users (Windows.Management.Deployment.PackageManager). Use and
/// destroy it on the thread that called this function. That thread joins the multithreaded
/// apartment for the walk's life unless it is in an apartment already.
///
/// This function and the walk report every failure of the runtime by throwing
/// Platform::WinRt::CallFailure; nothing is logged.
[[nodiscard]] std::unique_ptr<PackageWalk> FindAllPackages();

}  // namespace Zq::Gantry::Server::Services::Wattleaf
