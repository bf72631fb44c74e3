#include "reports/package_match.h"

#include <cstring>

namespace Zq::Gantry::Server::Services::Wattleaf {

bool IsPackageOf(const std::string& packageName, const std::string& appId) {
  return std::strncmp(packageName.c_str(), appId.c_str(), packageName.size()) == 0;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
