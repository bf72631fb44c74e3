#include "collection/wattleaf_helper.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

void WattleafHelper::LoadInstalledUWPApps() {}
void WattleafHelper::ParseManifest(const std::wstring&, std::wstring&, std::wstring&) {}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
