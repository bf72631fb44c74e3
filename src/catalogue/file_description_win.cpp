#include "catalogue/file_description.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

std::string GetFileDescription(const std::string&) { return {}; }

}  // namespace Zq::Gantry::Server::Services::Wattleaf
