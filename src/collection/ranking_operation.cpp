#include "collection/wattleaf_helper.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

void WattleafHelper::GetTop20PowerApps(std::wstring&, std::wstring&) {}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
