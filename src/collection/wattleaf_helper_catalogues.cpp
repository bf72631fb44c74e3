#include "collection/wattleaf_helper.h"

#include <utility>

#include "catalogue/desktop_apps.h"
#include "catalogue/package_logo.h"
#include "catalogue/package_manager.h"
#include "catalogue/packaged_apps.h"
#include "logging/trace_logger.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

void LogError(const wchar_t* text) { Logging::LogManager::GetLogger()->LogError(text); }

}  // namespace

void WattleafHelper::LoadInstalledWin32Apps() {
  // A copy is filled, since a request may be reading the current map.
  DesktopApps apps = *win32Apps.Current();
  AddInstalledPrograms(apps);
  win32Apps.Replace(std::move(apps));
}

// Exceptions of the walk itself propagate, and the catalogue stays as it was.
void WattleafHelper::LoadInstalledUWPApps() {
  PackagedApps apps = *uwpApps.Current();
  const auto readManifest = [this](const std::wstring& path, std::wstring& logo) {
    std::wstring displayName;
    ParseManifest(path, displayName, logo);
  };
  const auto logFailure = [] { LogError(L"Error while processing packages."); };
  AddPackagedApps(*FindAllPackages(), readManifest, logFailure, apps);
  uwpApps.Replace(std::move(apps));
}

void WattleafHelper::ParseManifest(const std::wstring& manifestPath, std::wstring& /*displayName*/,
                                   std::wstring& logo) {
  try {
    if (auto named = TryReadManifestLogo(manifestPath)) logo = std::move(*named);
  } catch (...) {
    LogError(L"Error parsing AppxManifest.xml");
  }
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
