#include "catalogue/icon_export.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

std::string ExportAppIcon(std::string, const std::string&, const std::string&, const std::string&) {
  return {};
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
