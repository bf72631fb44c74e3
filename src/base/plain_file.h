#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// True for a file that exists and is neither a directory nor any kind of link. Throws
/// std::filesystem::filesystem_error if the standard library cannot read its status for any reason
/// other than the file not existing.
bool IsPlainFile(const std::wstring& path);

/// The same without the exception: a status that cannot be read counts as not plain.
bool IsKnownPlainFile(const std::wstring& path);

/// The same with three answers: none if any of the status queries fails for a reason other than the
/// file not existing.
std::optional<bool> TryIsPlainFile(const std::wstring& path);

/// Makes the folder and all above it. True where it is there in the end.
bool CreateDirectoryTree(const std::wstring& path);

/// Whether a path with these attributes (GetFileAttributesW) is a link of any kind; none for a
/// reparse point whose tag cannot be read.
std::optional<bool> TryIsLink(const std::wstring& path, std::uint32_t attributes);

/// The same; a reparse point whose tag cannot be read counts as a link.
bool IsLink(const std::wstring& path, std::uint32_t attributes);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
