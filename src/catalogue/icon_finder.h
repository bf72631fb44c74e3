#pragma once

#include <string>
#include <string_view>

#include "catalogue/installed_apps.h"

// The icon files that are made for a ranking in the client's directory. All texts are bytes as the
// narrow Windows calls take them.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// The PNG file of one application.
struct IconFile {
  std::string_view directory;    ///< the client's; may be empty
  std::string_view displayName;  ///< from a file that an ordinary user may have written

  /// "directory\displayName.png", even if that leads out of the directory.
  [[nodiscard]] std::string Path() const;

  /// Whether that path lies in the directory itself. A name with a separator, a colon or a zero
  /// would let the service overwrite a file elsewhere; a zero in either text cuts the path short.
  /// Nothing may be written if this is false.
  [[nodiscard]] bool StaysInDirectory() const;
};

/// Makes icon files; both operations overwrite an existing file.
class IconMaker {
 public:
  virtual ~IconMaker() = default;

  /// Writes the icon of the executable with this device path, provided that the file stays in its
  /// directory. Returns the file's path, even if nothing could be written, or an empty text if the
  /// executable has no icon.
  [[nodiscard]] virtual std::string ExportAppIcon(const std::string& executable,
                                                  const IconFile& file) = 0;

  /// Copies a package's logo to `target`, which the caller has checked. False if the copy failed.
  [[nodiscard]] virtual bool CopyLogo(const std::string& logo, const std::string& target) = 0;
};

/// Makes the icons of one ranking. Used by one thread.
class IconFinder {
 public:
  /// All three are borrowed for the finder's life.
  IconFinder(const PackagedApps& packagedApps, std::string_view directory, IconMaker& maker)
      : packagedApps_(packagedApps), directory_(directory), maker_(maker) {}

  /// Makes the application's icon and returns its path in the directory; empty if it has none.
  [[nodiscard]] std::string Make(const std::string& appId, std::string_view displayName) const;

 private:
  [[nodiscard]] std::string CopyLogosOf(const std::string& appId, const IconFile& file) const;

  const PackagedApps& packagedApps_;
  const std::string_view directory_;
  IconMaker& maker_;
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
