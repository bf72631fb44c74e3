#include "service/wattleaf_service.h"

#include <optional>
#include <string>

#include "collection/wattleaf_helper.h"
#include "service/command_table.h"
#include "service/result_text.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

std::wstring BoolText(bool value) { return value ? L"true" : L"false"; }

std::wstring TreesSavedText(WattleafHelper& helper) {
  // Kept on purpose: the formula of GetTreeSavedCount a second time; the contract has it here too.
  const float average = helper.GetDailyAveragePowerConsumption();
  return FloatToWideString(average * 365.0F * 3.0F / 1000.0F / 300.0F);
}

/// Runs one command; empty if the command produced no text.
std::wstring RunCommand(Command command, std::wstring& request) {
  WattleafHelper& helper = WattleafHelper::Instance();
  std::wstring result;
  switch (command) {
    case Command::kDailyAverage:
      return FloatToWideString(helper.GetDailyAveragePowerConsumption());
    case Command::kTopApplications:
      helper.GetTop20PowerApps(request, result);
      return result;
    case Command::kTreesSaved:
      return TreesSavedText(helper);
    case Command::kLastHours:
      helper.GetDailyPowerConsumption(result);
      return result;
    case Command::kLastDays:
      helper.GetWeeklyPowerConsumption(result);
      return result;
    case Command::kLastMonths:
      helper.GetMonthlyPowerConsumption(result);
      return result;
    case Command::kPlatformSupport:
      return IntToWideString(helper.IsPlatformSupported());
    case Command::kDataChanged:
      return BoolText(helper.IsDataChanged());
    case Command::kErrorsAndWarnings:
      helper.GetErrorsAndWarnings(result);
      return result;
    case Command::kDataAvailable:
      return BoolText(helper.IsDataAvailable());
  }
  return result;
}

}  // namespace

int WattleafService::ExecuteCommand(void*, unsigned int command, wchar_t* input, wchar_t** output,
                                    std::function<void(wchar_t*)>,
                                    Security::RequestConfiguration*) {
  if (input == nullptr) return kNoResult;
  const std::optional<Command> known = TryCommand(command);
  if (!known) return kUnknownCommand;

  std::wstring request = input;
  const std::wstring result = RunCommand(*known, request);
  return HandOver(result, output) ? kResultHandedOver : kNoResult;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
