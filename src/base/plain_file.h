#pragma once

#include <cstdint>
#include <optional>
#include <string>

// Which paths may be read and deleted. A plain file exists and is neither a folder nor a link of
// any kind: other users can write to the data folder, and a link would make this library read or
// delete a file elsewhere.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// Whether the path is a plain file; false if its attributes cannot be read. Throws
/// std::filesystem::filesystem_error if the standard library cannot read its status after that, for
/// any reason other than the file not existing.
[[nodiscard]] bool IsPlainFile(const std::wstring& path);

/// The same without the exception: a file whose status cannot be read is not plain.
[[nodiscard]] bool IsKnownPlainFile(const std::wstring& path);

/// The same with three answers: empty if the status cannot be read for any reason other than the
/// file not existing.
[[nodiscard]] std::optional<bool> TryIsPlainFile(const std::wstring& path);

/// Whether a path with these attributes (GetFileAttributesW) is a symbolic link, a junction or
/// another reparse point that leads elsewhere. Empty if the tag of a reparse point cannot be read.
[[nodiscard]] std::optional<bool> TryIsLink(const std::wstring& path, std::uint32_t attributes);

/// The same; a reparse point whose tag cannot be read counts as a link.
[[nodiscard]] bool IsLink(const std::wstring& path, std::uint32_t attributes);

/// Makes a folder and all folders above it. True if it existed before, or if each missing one was
/// made; a link counts as a folder. False for more than 32767 characters. Kept on purpose: a new
/// path that ends in a separator is made, but the result is false.
[[nodiscard]] bool CreateDirectoryTree(const std::wstring& path);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
