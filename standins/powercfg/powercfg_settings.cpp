// Stand-in: what the environment tells POWERCFG.

#include "powercfg_settings.h"

#include <windows.h>

#include <time.h>

#include <algorithm>
#include <cstdlib>

namespace Standin {

namespace {

constexpr std::int64_t kUsualDays = 60;
constexpr std::int64_t kMostDays = 10'000;

std::wstring Read(const wchar_t* name) {
  std::wstring value(32 * 1024, L'\0');
  value.resize(GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
  return value;
}

std::int64_t ReadNumber(const wchar_t* name, std::int64_t usual) {
  const std::wstring text = Read(name);
  return text.empty() ? usual : std::wcstoll(text.c_str(), nullptr, 10);
}

ToolOutput ReadOutput() {
  const std::wstring text = Read(L"WATTLEAF_POWERCFG_OUTPUT");
  if (text == L"nothing") return ToolOutput::kNothing;
  return text == L"broken" ? ToolOutput::kBroken : ToolOutput::kReport;
}

}  // namespace

PowercfgSettings ReadPowercfgSettings() {
  PowercfgSettings settings{};
  settings.seed = static_cast<std::uint64_t>(ReadNumber(L"WATTLEAF_POWERCFG_SEED", 1));
  settings.days = static_cast<int>(
      std::clamp<std::int64_t>(ReadNumber(L"WATTLEAF_POWERCFG_DAYS", kUsualDays), 0, kMostDays));
  settings.now = ReadNumber(L"WATTLEAF_POWERCFG_NOW", _time64(nullptr));
  settings.status = static_cast<int>(ReadNumber(L"WATTLEAF_POWERCFG_STATUS", 0));
  settings.output = ReadOutput();
  settings.truthPath = Read(L"WATTLEAF_POWERCFG_TRUTH");
  return settings;
}

}  // namespace Standin
