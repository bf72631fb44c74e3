#include "collection/wattleaf_helper.h"

// The road of application energy: declared, without effect until its rules stand in reports/.
namespace Zq::Gantry::Server::Services::Wattleaf {

void WattleafHelper::GetTop20PowerApps(std::wstring&, std::wstring&) {}
void WattleafHelper::GetErrorsAndWarnings(std::wstring&) {}
void WattleafHelper::ConvertPowerLogXmltoJson() {}
void WattleafHelper::OnGetTop20PowerApps() {}
void WattleafHelper::OnGetErrorAndWarnings() {}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
