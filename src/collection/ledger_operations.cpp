#include "collection/wattleaf_helper.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

std::string WattleafHelper::GetDevicePath(std::string) { return {}; }
GenericDocument* WattleafHelper::GetJsonFromDate(const DateTime&) { return nullptr; }
void WattleafHelper::CalculateDailyPowerConsumption() {}
float WattleafHelper::CalculateDailyPowerConsumption(const DateTime&) { return 0.0F; }
std::map<int, float> WattleafHelper::GetPowerConsumption(const DateTime&) { return {}; }
float WattleafHelper::GetDailyAveragePowerConsumption() { return 0.0F; }
float WattleafHelper::GetTreeSavedCount() { return 0.0F; }
void WattleafHelper::GetDailyPowerConsumption(std::wstring&) {}
void WattleafHelper::GetWeeklyPowerConsumption(std::wstring&) {}
void WattleafHelper::GetMonthlyPowerConsumption(std::wstring&) {}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
