#include "collection/wattleaf_helper.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

void WattleafHelper::OnGetTop20PowerApps() {}
void WattleafHelper::OnGetErrorAndWarnings() {}
void WattleafHelper::GetErrorsAndWarnings(std::wstring&) {}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
