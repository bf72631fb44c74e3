#pragma once

#include <string>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// True for a file that is there and is neither a directory nor any kind of link. A status that
/// cannot be had for another reason than absence leaves as std::filesystem::filesystem_error.
bool IsPlainFile(const std::wstring& path);

/// The same for what goes on past such a file: a status that cannot be had counts as not plain.
bool IsKnownPlainFile(const std::wstring& path);

/// Makes the folder and all above it. True where it is there in the end.
bool CreateDirectoryTree(const std::wstring& path);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
