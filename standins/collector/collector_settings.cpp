// Stand-in: what the environment tells the collector.

#include "collector_settings.h"

#include <windows.h>

#include <time.h>

#include <algorithm>
#include <cstdlib>

namespace Standin {

namespace {

constexpr wchar_t kUsualTruthPath[] =
    L"C:\\ProgramData\\ZQ\\TelemetryDataCollector\\PCMCollector-truth.json";

std::wstring Read(const wchar_t* name) {
  std::wstring value(32 * 1024, L'\0');
  value.resize(GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
  return value;
}

std::int64_t ReadNumber(const wchar_t* name, std::int64_t usual) {
  const std::wstring text = Read(name);
  return text.empty() ? usual : std::wcstoll(text.c_str(), nullptr, 10);
}

std::string Narrow(const std::wstring& text) {
  std::string narrow;
  for (const wchar_t c : text) narrow += static_cast<char>(c);
  return narrow;
}

}  // namespace

CollectorSettings ReadCollectorSettings() {
  CollectorSettings settings{};
  settings.status = Narrow(Read(L"WATTLEAF_COLLECTOR_STATUS"));
  settings.days = static_cast<int>(
      std::clamp<std::int64_t>(ReadNumber(L"WATTLEAF_COLLECTOR_DAYS", kMostDays), 0, kMostDays));
  settings.model.seed = static_cast<std::uint64_t>(ReadNumber(L"WATTLEAF_COLLECTOR_SEED", 1));
  settings.model.periodSeconds =
      std::max<std::int64_t>(ReadNumber(L"WATTLEAF_COLLECTOR_PERIOD", 60), 1);
  settings.now = ReadNumber(L"WATTLEAF_COLLECTOR_NOW", _time64(nullptr));
  settings.truthPath = Read(L"WATTLEAF_COLLECTOR_TRUTH");
  if (settings.truthPath.empty()) settings.truthPath = kUsualTruthPath;
  return settings;
}

}  // namespace Standin
