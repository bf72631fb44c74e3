#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "catalogue/installed_apps.h"
#include "reports/name_table.h"
#include "reports/power_budget.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Finds the display names of applications, for one run of the conversion. The name of an
/// executable on the system drive is its file description, that of a packaged application the name
/// in the catalogue; nothing else has a name. Names are remembered, up to a limit of bytes, so that
/// a file is read once for all rows of its application. Used by one thread.
class DisplayNames {
 public:
  /// Returns the description of the executable at this path, or an empty text.
  using DescribeFile = std::function<std::string(const std::string& path)>;

  /// `devicePrefix` is the device path of the system drive, or empty; then no executable has a
  /// name. `packagedApps` is borrowed for the object's life.
  DisplayNames(std::string devicePrefix, const PackagedApps& packagedApps,
               DescribeFile describeFile,
               std::size_t mostRememberedBytes = kMostRememberedNameBytes);

  /// The display name of the application with this identity (catalogue/app_identity.h), as bytes in
  /// the encoding of its source; empty if no name is known. Valid until the next call. Exceptions
  /// of `describeFile` propagate.
  [[nodiscard]] std::string_view Resolve(const std::string& appId);

 private:
  [[nodiscard]] std::optional<std::string> TryDescribe(const std::string& appId) const;
  [[nodiscard]] std::optional<std::string> TryPackageName(const std::string& appId) const;

  const std::string devicePrefix_;
  const PackagedApps& packagedApps_;
  const DescribeFile describeFile_;
  const std::size_t mostRememberedBytes_;
  std::size_t rememberedBytes_ = 0;
  NameTable<std::string> displayNameByAppId_;
  std::string notRemembered_;
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
