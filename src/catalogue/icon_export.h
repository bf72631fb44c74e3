#pragma once

#include <windows.h>

#include <string>
#include <utility>

#include "catalogue/icon_finder.h"

// Icon files made by the system: the shell finds an executable's icon, GDI+ writes it. Any thread;
// nothing is logged.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// Writes the icon of a desktop application as "directory\displayName.png", over an existing file.
/// Returns that path, even if nothing could be written; empty if the application has no icon.
/// Nothing is written if the display name leads out of the directory (IconFile::StaysInDirectory).
/// `path` is a device path and `devicePrefix` the device path of the system drive. If the prefix is
/// empty, or the path on the drive is longer than 259 bytes, the icon is that of an empty path
/// (ExtractAssociatedIconExA takes MAX_PATH).
[[nodiscard]] std::string ExportAppIcon(std::string path, const std::string& directory,
                                        const std::string& displayName,
                                        const std::string& devicePrefix);

/// Writes an icon as a PNG file with its alpha channel, over an existing file. The caller keeps the
/// icon. False if any step failed.
[[nodiscard]] bool SaveIconAsPng(HICON icon, const std::wstring& path);

/// Makes icon files with the service's own rights.
class SystemIconMaker final : public IconMaker {
 public:
  /// The device path of the system drive; may be empty.
  explicit SystemIconMaker(std::string devicePrefix) : devicePrefix_(std::move(devicePrefix)) {}

  [[nodiscard]] std::string ExportAppIcon(const std::string& executable,
                                          const IconFile& file) override;

  /// CopyFileA, which ends both texts at their first zero.
  [[nodiscard]] bool CopyLogo(const std::string& logo, const std::string& target) override;

 private:
  const std::string devicePrefix_;
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
