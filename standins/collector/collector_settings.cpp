// Stand-in: the collector's settings, read from the environment.

#include "collector_settings.h"

#include <time.h>

#include <algorithm>

#include "environment.h"

namespace Standin {

namespace {

constexpr wchar_t kDefaultTruthPath[] =
    L"C:\\ProgramData\\ZQ\\TelemetryDataCollector\\PCMCollector-truth.json";

}  // namespace

CollectorSettings ReadCollectorSettings() {
  CollectorSettings settings{};
  settings.status = ReadAsciiVariable(L"WATTLEAF_COLLECTOR_STATUS");
  settings.days = static_cast<int>(std::clamp<std::int64_t>(
      ReadNumberVariable(L"WATTLEAF_COLLECTOR_DAYS", kMostDays), 0, kMostDays));
  settings.model.seed =
      static_cast<std::uint64_t>(ReadNumberVariable(L"WATTLEAF_COLLECTOR_SEED", 1));
  settings.model.periodSeconds =
      std::max<std::int64_t>(ReadNumberVariable(L"WATTLEAF_COLLECTOR_PERIOD", 60), 1);
  settings.now = ReadNumberVariable(L"WATTLEAF_COLLECTOR_NOW", _time64(nullptr));
  settings.truthPath = ReadVariable(L"WATTLEAF_COLLECTOR_TRUTH");
  if (settings.truthPath.empty()) settings.truthPath = kDefaultTruthPath;
  settings.failure = ReadAsciiVariable(L"WATTLEAF_COLLECTOR_FAILURE");
  settings.holdsLock = ReadVariable(L"WATTLEAF_COLLECTOR_LOCK") == L"held";
  return settings;
}

}  // namespace Standin
