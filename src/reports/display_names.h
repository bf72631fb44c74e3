#pragma once

#include <functional>
#include <map>
#include <string>

#include "catalogue/installed_apps.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Finds the names under which applications are shown, for one run of the conversion: a name that
/// was found is not looked up again.
class DisplayNames {
 public:
  /// The description of an executable, empty where it has none.
  using DescribeFile = std::function<std::string(const std::string& path)>;

  /// `devicePrefix` is the device path of the system drive, empty where it has none. `packagedApps`
  /// is borrowed.
  DisplayNames(std::string devicePrefix, const PackagedApps& packagedApps,
               DescribeFile describeFile);

  /// Empty where nobody knows a name.
  std::string Resolve(const std::string& appId);

 private:
  void ResolveExecutable(const std::string& appId);
  void ResolvePackage(const std::string& appId);

  const std::string devicePrefix_;
  const PackagedApps& packagedApps_;
  const DescribeFile describeFile_;
  std::map<std::string, std::string> displayNameByAppId_;
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
