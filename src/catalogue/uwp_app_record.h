#pragma once

#include <string>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// What is shown of one packaged application.
struct UwpAppRecord {
  std::string DisplayName;
  std::string Logo;  ///< absolute path of a small logo file
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
