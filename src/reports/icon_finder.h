#pragma once

#include <functional>
#include <map>
#include <string>

#include "catalogue/installed_apps.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Where icons go, and what makes them. Texts are bytes as the narrow Windows calls take them.
struct IconProduction {
  std::string directory;
  /// The device path of the system drive; may be empty.
  std::string devicePrefix;
  /// Path of the executable, directory, display name, device prefix. The icon's path, or empty.
  std::function<std::string(std::string, const std::string&, const std::string&,
                            const std::string&)>
      exportAppIcon;
  /// From, to. False where nothing was copied.
  std::function<bool(const std::string&, const std::string&)> copyLogo;
};

/// The icons of one ranking. One that was found for a display name is not made a second time.
class IconFinder {
 public:
  /// Both are borrowed for the finder's life.
  IconFinder(const PackagedApps& packagedApps, const IconProduction& production)
      : packagedApps_(packagedApps), production_(production) {}

  /// The path of the application's icon in the directory; empty where it has none, which is not
  /// remembered.
  std::string Find(const std::string& appId, const std::string& displayName);

 private:
  std::string Produce(const std::string& appId, const std::string& displayName) const;
  std::string CopyLogosOf(const std::string& appId, const std::string& displayName) const;

  const PackagedApps& packagedApps_;
  const IconProduction& production_;
  std::map<std::string, std::string> iconByDisplayName_;
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
