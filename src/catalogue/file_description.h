#pragma once

#include <string>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// "FileDescription" of an executable's version resource, in the system's ANSI code page
/// (VerQueryValueA). The first translation that has one counts; empty if there is none, if the file
/// cannot be read, or if the path has 32,767 bytes or more. Any thread; nothing is logged.
[[nodiscard]] std::string GetFileDescription(const std::string& path);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
