// Stand-in: what the environment tells POWERCFG.

#include "powercfg_settings.h"

#include <time.h>

#include <algorithm>

#include "environment.h"

namespace Standin {

namespace {

constexpr std::int64_t kUsualDays = 60;
constexpr std::int64_t kMostDays = 10'000;

ToolOutput ReadOutput() {
  const std::wstring text = ReadVariable(L"WATTLEAF_POWERCFG_OUTPUT");
  if (text == L"nothing") return ToolOutput::kNothing;
  return text == L"broken" ? ToolOutput::kBroken : ToolOutput::kReport;
}

}  // namespace

PowercfgSettings ReadPowercfgSettings() {
  PowercfgSettings settings{};
  settings.seed = static_cast<std::uint64_t>(ReadNumberVariable(L"WATTLEAF_POWERCFG_SEED", 1));
  settings.days = static_cast<int>(std::clamp<std::int64_t>(
      ReadNumberVariable(L"WATTLEAF_POWERCFG_DAYS", kUsualDays), 0, kMostDays));
  settings.now = ReadNumberVariable(L"WATTLEAF_POWERCFG_NOW", _time64(nullptr));
  settings.status = static_cast<int>(ReadNumberVariable(L"WATTLEAF_POWERCFG_STATUS", 0));
  settings.output = ReadOutput();
  for (const wchar_t c : ReadVariable(L"WATTLEAF_POWERCFG_ONLY")) {
    settings.only += static_cast<char>(c);
  }
  settings.truthPath = ReadVariable(L"WATTLEAF_POWERCFG_TRUTH");
  return settings;
}

}  // namespace Standin
