#include "base/plain_file.h"

#include <windows.h>

#include <filesystem>
#include <system_error>
#include <vector>

#include "platform/win32/owners.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

// The system's own limit: no longer path can exist, and looking up each of its parents would take
// time that grows with the square of its length.
constexpr std::size_t kLongestPathChars = 32767;

bool IsNotFound(DWORD error) {
  return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

// Tags of links that lack the name surrogate bit.
constexpr DWORD kNetworkLinkTag = 0x80000014;
constexpr DWORD kAppExecutionLinkTag = 0x8000001B;

bool IsLinkTag(DWORD tag) {
  return tag == 0 || IsReparseTagNameSurrogate(tag) || tag == kNetworkLinkTag ||
         tag == kAppExecutionLinkTag;
}

}  // namespace

// By the tag, since the standard library of one of our toolchains never reports a link. A file
// whose content is deduplicated, compressed or in the cloud is a reparse point too, but not a link.
std::optional<bool> TryIsLink(const std::wstring& path, std::uint32_t attributes) {
  if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return false;
  WIN32_FIND_DATAW entry{};
  const Platform::UniqueFindHandle search(FindFirstFileW(path.c_str(), &entry));
  if (!search) return std::nullopt;
  if ((entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return std::nullopt;
  return IsLinkTag(entry.dwReserved0);
}

bool IsLink(const std::wstring& path, std::uint32_t attributes) {
  return TryIsLink(path, attributes).value_or(true);
}

bool IsPlainFile(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return false;
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return false;
  if (std::filesystem::is_symlink(std::filesystem::symlink_status(path))) return false;
  return !IsLink(path, attributes);
}

bool IsKnownPlainFile(const std::wstring& path) {
  try {
    return IsPlainFile(path);
  } catch (const std::filesystem::filesystem_error&) {
    return false;
  }
}

std::optional<bool> TryIsPlainFile(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) {
    if (IsNotFound(GetLastError())) return false;
    return std::nullopt;
  }
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return false;
  std::error_code error;
  const auto status = std::filesystem::symlink_status(path, error);
  if (status.type() == std::filesystem::file_type::none) return std::nullopt;
  if (std::filesystem::is_symlink(status)) return false;
  const std::optional<bool> isLink = TryIsLink(path, attributes);
  if (!isLink) return std::nullopt;
  return !*isLink;
}

// A loop, not a recursion: the path may be a client's text, with any number of separators.
bool CreateDirectoryTree(const std::wstring& path) {
  if (path.size() > kLongestPathChars) return false;
  std::vector<std::wstring::size_type> missing;
  std::wstring parent = path;
  DWORD attributes = GetFileAttributesW(parent.c_str());
  while (attributes == INVALID_FILE_ATTRIBUTES) {
    missing.push_back(parent.size());
    const auto separator = parent.find_last_of(L"\\/");
    if (separator == std::wstring::npos) break;
    parent.resize(separator);
    attributes = GetFileAttributesW(parent.c_str());
  }
  if (attributes != INVALID_FILE_ATTRIBUTES &&
      (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT)) == 0) {
    return false;
  }
  // Kept on purpose: for a new path with a separator at its end this makes the folder and returns
  // false, since the second call fails for a folder that exists (test
  // CreateDirectoryTree.ReturnsFalseForANewPathWithATrailingSeparator).
  for (auto length = missing.rbegin(); length != missing.rend(); ++length) {
    if (!CreateDirectoryW(path.substr(0, *length).c_str(), nullptr)) return false;
  }
  return true;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
