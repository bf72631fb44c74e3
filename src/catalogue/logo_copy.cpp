#include "catalogue/logo_copy.h"

#include <windows.h>

namespace Zq::Gantry::Server::Services::Wattleaf {

bool CopyLogo(const std::string& from, const std::string& to) {
  return CopyFileA(from.c_str(), to.c_str(), /*bFailIfExists=*/FALSE) != 0;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
