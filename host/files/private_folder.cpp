#include "files/private_folder.h"

#include <windows.h>

#include <sddl.h>

#include <array>
#include <cstddef>
#include <vector>

#include "base/utf8_text.h"
#include "files/file_failure.h"
#include "platform/win32/owners.h"

namespace WattleafHost {

namespace {

using Zq::Gantry::Platform::UniqueFindHandle;
using Zq::Gantry::Platform::UniqueHandle;
using Zq::Gantry::Platform::UniqueLocalBlock;
using Zq::Gantry::Server::Services::Wattleaf::ToUtf8;

[[noreturn]] void ThrowNoFolder(const std::wstring& place, DWORD error) {
  throw FileFailure("cannot make a private folder in " + ToUtf8(place) + " (error " +
                    std::to_string(error) +
                    "); set TEMP to a folder that you can write to, and free space there");
}

/// The user of this process as text, "S-1-5-21-..."; empty if the system does not say.
std::wstring UserSid() {
  UniqueHandle token;
  if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, token.out())) return {};
  alignas(TOKEN_USER) std::array<std::byte, sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE> user{};
  DWORD size = 0;
  if (!GetTokenInformation(token.get(), TokenUser, user.data(), static_cast<DWORD>(user.size()),
                           &size)) {
    return {};
  }
  wchar_t* text = nullptr;
  if (!ConvertSidToStringSidW(reinterpret_cast<TOKEN_USER*>(user.data())->User.Sid, &text)) {
    return {};
  }
  const UniqueLocalBlock block(text);
  return text;
}

/// Full access for this user, the system and administrators, and for no others; nothing is
/// inherited from the parent folder. Empty on failure.
UniqueLocalBlock PrivateDescriptor() {
  const std::wstring user = UserSid();
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

}  // namespace

std::wstring MakePrivateFolder() {
  const std::wstring place = TemporaryFolder();
  const UniqueLocalBlock descriptor = PrivateDescriptor();
  if (!descriptor) ThrowNoFolder(place, GetLastError());
  SECURITY_ATTRIBUTES security{sizeof(security), descriptor.get(), FALSE};
  const std::wstring stem = place + L"wattleaf-host-" + std::to_wstring(GetCurrentProcessId());
  // A killed process may have left a folder of that name, or another user may have made it: an
  // existing folder is never used.
  constexpr int kMostTries = 1000;
  for (int number = 0; number < kMostTries; ++number) {
    const std::wstring folder = stem + L"-" + std::to_wstring(number);
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
