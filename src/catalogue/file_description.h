#pragma once

#include <string>

namespace Zq::Gantry::Server::Services::Wattleaf {

std::string GetFileDescription(const std::string& path);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
