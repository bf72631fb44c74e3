#pragma once

#include <string>

namespace Zq::Gantry::Server::Services::Wattleaf {

std::string ExportAppIcon(std::string path, const std::string& directory,
                          const std::string& displayName, const std::string& devicePrefix);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
