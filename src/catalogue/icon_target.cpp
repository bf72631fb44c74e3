#include "catalogue/icon_target.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

bool StaysInDirectory(std::string_view directory, std::string_view displayName) {
  constexpr std::string_view kLeadsElsewhere("\\/:\0", 4);
  return displayName.find_first_of(kLeadsElsewhere) == std::string_view::npos &&
         directory.find('\0') == std::string_view::npos;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
