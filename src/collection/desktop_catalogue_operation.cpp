#include "collection/wattleaf_helper.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

void WattleafHelper::LoadInstalledWin32Apps() {}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
