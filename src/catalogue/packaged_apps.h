#pragma once

#include <functional>

#include "catalogue/installed_apps.h"
#include "catalogue/installed_package.h"
#include "catalogue/package_logo.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Adds the applications among the packages of the walk, with the low bytes of their texts, and
/// replaces those of the same name. Frameworks, packages of the operating system and those without
/// a name to show or a logo stay out.
///
/// A package that raises anything is left out, and `packageFailed` is called; the walk goes on.
/// What the walk itself raises is let out.
void AddPackagedApps(PackageWalk& walk, const ManifestReader& readManifest,
                     const std::function<void()>& packageFailed, PackagedApps& apps);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
