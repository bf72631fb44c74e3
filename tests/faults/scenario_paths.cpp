#include "scenario_paths.h"

#include <windows.h>

#include <array>

namespace Faults {

std::wstring CollectorPath() {
  std::array<wchar_t, MAX_PATH> path{};
  GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size() - 1));
  const std::wstring program = path.data();
  return program.substr(0, program.find_last_of(L'\\') + 1) + L"TelemetryZQXWrapper.dll";
}

}  // namespace Faults
