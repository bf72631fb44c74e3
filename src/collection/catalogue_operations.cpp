#include "collection/wattleaf_helper.h"

// The application catalogues: declared, without effect until their rules stand in catalogue/.
namespace Zq::Gantry::Server::Services::Wattleaf {

void WattleafHelper::LoadInstalledWin32Apps() {}
void WattleafHelper::LoadInstalledUWPApps() {}
void WattleafHelper::ParseManifest(const std::wstring&, std::wstring&, std::wstring&) {}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
