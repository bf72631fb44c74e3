#pragma once

#include <map>
#include <string>

#include "catalogue/uwp_app_record.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Display name to the raw text of the icon's place, of the desktop programs declared as installed.
using DesktopApps = std::map<std::wstring, std::wstring>;

/// Package name (without version) to what is shown of the package. Ordered by bytes, then length.
using PackagedApps = std::map<std::string, UwpAppRecord>;

}  // namespace Zq::Gantry::Server::Services::Wattleaf
