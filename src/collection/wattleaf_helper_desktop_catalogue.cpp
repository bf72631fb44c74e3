#include <utility>

#include "catalogue/desktop_apps.h"
#include "collection/wattleaf_helper.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

void WattleafHelper::LoadInstalledWin32Apps() {
  // Filled aside: a request walks the map that it took meanwhile.
  DesktopApps apps = *win32Apps.Current();
  AddInstalledPrograms(apps);
  win32Apps.Replace(std::move(apps));
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
