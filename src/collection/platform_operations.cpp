#include "collection/wattleaf_helper.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

int WattleafHelper::IsPlatformSupported() { return PlatformSupportState; }

}  // namespace Zq::Gantry::Server::Services::Wattleaf
