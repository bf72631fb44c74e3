#pragma once

#include <string>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// The name that an executable gives itself in its version resource, as its bytes stand in the
/// resource's narrow form; empty if there is none. Nothing is logged.
std::string GetFileDescription(const std::string& path);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
