#pragma once

#include <string>

#include "catalogue/installed_apps.h"

namespace WattleafHost {

/// The device path of the system drive; empty if the system does not say.
[[nodiscard]] std::string SystemDrivePath();

/// The packaged applications, as a pass finds them. Empty on any failure, as if none were
/// installed.
[[nodiscard]] Zq::Gantry::Server::Services::Wattleaf::PackagedApps FindPackagedApps();

}  // namespace WattleafHost
