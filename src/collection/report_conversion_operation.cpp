#include "collection/wattleaf_helper.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

void WattleafHelper::ConvertPowerLogXmltoJson() {}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
