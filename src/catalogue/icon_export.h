#pragma once

#include <string>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Writes the icon of a desktop application as a PNG named after it, and gives that file's path;
/// empty if the application has no icon. The path is given even where nothing could be written.
/// `devicePrefix` is the device behind the system drive; without one no path is looked at.
/// Any thread; an existing file is overwritten, and nothing is logged.
std::string ExportAppIcon(std::string path, const std::string& directory,
                          const std::string& displayName, const std::string& devicePrefix);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
