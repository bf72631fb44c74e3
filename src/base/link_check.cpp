#include "base/link_check.h"

#include <windows.h>

#include "platform/win32/owners.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

// Tags without the name surrogate bit that lead elsewhere all the same.
constexpr DWORD kNetworkLinkTag = 0x80000014;
constexpr DWORD kAppExecutionLinkTag = 0x8000001B;

bool IsLinkTag(DWORD tag) {
  return tag == 0 || IsReparseTagNameSurrogate(tag) || tag == kNetworkLinkTag ||
         tag == kAppExecutionLinkTag;
}

}  // namespace

// The standard library of one of our toolchains never reports a link, hence the tag. Stored-away
// content (deduplicated, compressed, in the cloud) is a reparse point too, but no link.
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

}  // namespace Zq::Gantry::Server::Services::Wattleaf
