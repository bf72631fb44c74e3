#include "snapshot/system_apps.h"

#include <windows.h>

#include <array>
#include <utility>

#include "catalogue/app_identity.h"
#include "catalogue/package_logo.h"
#include "catalogue/package_manager.h"
#include "catalogue/packaged_apps.h"

namespace WattleafHost {

using namespace Zq::Gantry::Server::Services::Wattleaf;

std::string SystemDrivePath() {
  std::array<char, 1024> path{};
  const auto capacity = static_cast<DWORD>(path.size() - 1);
  if (QueryDosDeviceA(kSystemDrive, path.data(), capacity) == 0) return {};
  return path.data();  // the first of several texts
}

PackagedApps FindPackagedApps() {
  PackagedApps apps;
  const auto readManifest = [](const std::wstring& path, std::wstring& logo) {
    if (auto named = TryReadManifestLogo(path)) logo = std::move(*named);
  };
  try {
    AddPackagedApps(
        *FindAllPackages(), readManifest, [] {}, apps);
  } catch (...) {
    return {};
  }
  return apps;
}

}  // namespace WattleafHost
