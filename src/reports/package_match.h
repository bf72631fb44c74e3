#pragma once

#include <string>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Whether an application is of a package: its identity begins with the package's name. An identity
/// ends at its first zero here, as C texts do.
bool IsPackageOf(const std::string& packageName, const std::string& appId);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
