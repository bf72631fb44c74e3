#include "files/private_folder.h"

#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "base/plain_file.h"
#include "base/utf8_text.h"
#include "files/file_failure.h"
#include "platform/win32/owners.h"

namespace WattleafHost {

namespace {

using Zq::Gantry::Platform::UniqueFindHandle;
using Zq::Gantry::Platform::UniqueHandle;
using Zq::Gantry::Platform::UniqueLocalBlock;
using Zq::Gantry::Server::Services::Wattleaf::IsLink;
using Zq::Gantry::Server::Services::Wattleaf::ToUtf8;

constexpr std::wstring_view kNameBegin = L"wattleaf-host-";

[[noreturn]] void ThrowNoFolder(const std::wstring& place, DWORD error) {
  throw FileFailure("cannot make a private folder in " + ToUtf8(place) + " (error " +
                    std::to_string(error) +
                    "); set TEMP to a folder that you can write to, and free space there");
}

/// An account as text, "S-1-5-21-..."; empty if the system does not say.
std::wstring SidText(PSID account) {
  wchar_t* text = nullptr;
  if (!ConvertSidToStringSidW(account, &text)) return {};
  const UniqueLocalBlock block(text);
  return text;
}

/// An account of this process: TokenUser, or TokenOwner, which owns the files that it makes.
/// Empty if the system does not say.
std::wstring OwnSid(TOKEN_INFORMATION_CLASS which) {
  UniqueHandle token;
  if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, token.out())) return {};
  alignas(TOKEN_USER) std::array<std::byte, sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE> account{};
  DWORD size = 0;
  if (!GetTokenInformation(token.get(), which, account.data(), static_cast<DWORD>(account.size()),
                           &size)) {
    return {};
  }
  // Both structures begin with the pointer to the account.
  return SidText(reinterpret_cast<TOKEN_OWNER*>(account.data())->Owner);
}

/// Full access for this user, the system and administrators, and for no others; nothing is
/// inherited from the parent folder. Empty on failure.
UniqueLocalBlock PrivateDescriptor() {
  const std::wstring user = OwnSid(TokenUser);
  if (user.empty()) return {};
  const std::wstring text = L"D:P(A;OICI;FA;;;" + user + L")(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)";
  void* descriptor = nullptr;
  if (!ConvertStringSecurityDescriptorToSecurityDescriptorW(text.c_str(), SDDL_REVISION_1,
                                                            &descriptor, /*size=*/nullptr)) {
    return {};
  }
  return UniqueLocalBlock(descriptor);
}

/// With a separator at its end.
std::wstring TemporaryFolder() {
  std::array<wchar_t, MAX_PATH + 1> path{};
  const DWORD length = GetTempPathW(static_cast<DWORD>(path.size()), path.data());
  return length < path.size() ? std::wstring(path.data(), length) : std::wstring();
}

void RemoveEntry(const std::wstring& path, DWORD attributes) {
  const bool isFolder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  const bool isLink = (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  if (isFolder && !isLink) return RemoveFolderTree(path);
  if (isFolder) {
    RemoveDirectoryW(path.c_str());
  } else {
    DeleteFileW(path.c_str());
  }
}

bool IsNumber(std::wstring_view text) {
  return !text.empty() && text.find_first_not_of(L"0123456789") == std::wstring_view::npos;
}

/// "wattleaf-host-<process>-<number>"
bool IsNameOfPrivateFolder(std::wstring_view name) {
  if (!name.starts_with(kNameBegin)) return false;
  name.remove_prefix(kNameBegin.size());
  const std::size_t hyphen = name.find(L'-');
  return hyphen != std::wstring_view::npos && IsNumber(name.substr(0, hyphen)) &&
         IsNumber(name.substr(hyphen + 1));
}

std::int64_t Count(FILETIME time) {
  return std::int64_t{time.dwHighDateTime} << 32 | std::int64_t{time.dwLowDateTime};
}

bool IsOlderThanADay(FILETIME changed) {
  constexpr std::int64_t kDay = std::int64_t{24} * 3600 * 10'000'000;  // in 100 ns, as a FILETIME
  FILETIME now{};
  GetSystemTimeAsFileTime(&now);
  return Count(now) - Count(changed) > kDay;
}

bool IsOfThisUser(const std::wstring& folder) {
  PSID owner = nullptr;
  void* descriptor = nullptr;
  if (GetNamedSecurityInfoW(folder.c_str(), SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION, &owner,
                            nullptr, nullptr, nullptr, &descriptor) != ERROR_SUCCESS) {
    return false;
  }
  const UniqueLocalBlock block(descriptor);
  const std::wstring text = SidText(owner);
  return !text.empty() && (text == OwnSid(TokenUser) || text == OwnSid(TokenOwner));
}

/// Other users can make folders in a shared place too. They cannot enter one that this user made,
/// so nothing can be replaced by a link while it is being removed.
bool IsLeftFolder(const std::wstring& path, const WIN32_FIND_DATAW& entry) {
  return IsNameOfPrivateFolder(entry.cFileName) &&
         (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 &&
         !IsLink(path, entry.dwFileAttributes) && IsOlderThanADay(entry.ftLastWriteTime) &&
         IsOfThisUser(path);
}

/// What cannot be removed stays for the next time.
void RemoveLeftFolders(const std::wstring& place) {
  std::vector<std::wstring> left;
  {
    WIN32_FIND_DATAW entry{};
    const std::wstring pattern = place + std::wstring(kNameBegin) + L"*";
    const UniqueFindHandle search(FindFirstFileW(pattern.c_str(), &entry));
    bool isFound = static_cast<bool>(search);
    while (isFound) {
      if (IsLeftFolder(place + entry.cFileName, entry)) left.push_back(place + entry.cFileName);
      isFound = FindNextFileW(search.get(), &entry) != 0;
    }
  }
  std::ranges::for_each(left, &RemoveFolderTree);
}

}  // namespace

std::wstring MakePrivateFolder() {
  const std::wstring place = TemporaryFolder();
  RemoveLeftFolders(place);
  const UniqueLocalBlock descriptor = PrivateDescriptor();
  if (!descriptor) ThrowNoFolder(place, GetLastError());
  SECURITY_ATTRIBUTES security{sizeof(security), descriptor.get(), FALSE};
  const std::wstring stem =
      place + std::wstring(kNameBegin) + std::to_wstring(GetCurrentProcessId());
  // A killed process may have left a folder of that name, or another user may have made it: an
  // existing folder is never used.
  constexpr int kMostTries = 1000;
  for (int number = 0; number < kMostTries; ++number) {
    std::wstring folder = stem + L"-" + std::to_wstring(number);
    if (CreateDirectoryW(folder.c_str(), &security)) return folder;
    const DWORD error = GetLastError();
    if (error != ERROR_ALREADY_EXISTS) ThrowNoFolder(place, error);
  }
  ThrowNoFolder(place, ERROR_ALREADY_EXISTS);
}

void RemoveFolderTree(const std::wstring& folder) {
  {
    WIN32_FIND_DATAW entry{};
    const UniqueFindHandle search(FindFirstFileW((folder + L"\\*").c_str(), &entry));
    bool isFound = static_cast<bool>(search);
    while (isFound) {
      const std::wstring name = entry.cFileName;
      if (name != L"." && name != L"..") RemoveEntry(folder + L"\\" + name, entry.dwFileAttributes);
      isFound = FindNextFileW(search.get(), &entry) != 0;
    }
  }
  RemoveDirectoryW(folder.c_str());
}

}  // namespace WattleafHost
