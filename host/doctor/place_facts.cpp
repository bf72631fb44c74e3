#include "doctor/place_facts.h"

#include <windows.h>

#include <aclapi.h>

#include <algorithm>
#include <array>
#include <cstdint>

#include "base/plain_file.h"
#include "base/utf8_text.h"
#include "platform/win32/owners.h"

namespace WattleafHost {

namespace {

using Zq::Gantry::Platform::UniqueFileHandle;
using Zq::Gantry::Platform::UniqueLocalBlock;
using namespace Zq::Gantry::Server::Services::Wattleaf;
using State = PlaceFacts::State;

State StateOf(const std::wstring& path, DWORD attributes) {
  if (attributes == INVALID_FILE_ATTRIBUTES) {
    const DWORD error = GetLastError();
    const bool isMissing = error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
    return isMissing ? State::kMissing : State::kUnreadable;
  }
  if (IsLink(path, attributes)) return State::kLink;
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return State::kFolder;
  return IsKnownPlainFile(path) ? State::kPlain : State::kLink;
}

/// By opening it for writing; the right to write data of a folder is that to add a file.
bool IsWritable(const std::wstring& path, DWORD attributes) {
  const bool isFolder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  if (!isFolder && (attributes & FILE_ATTRIBUTE_READONLY) != 0) return false;
  const UniqueFileHandle opened(CreateFileW(
      path.c_str(), FILE_WRITE_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
      /*security=*/nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, /*templateFile=*/nullptr));
  return static_cast<bool>(opened);
}

/// Seconds since 1970; a FILETIME counts 100 nanoseconds since 1601.
std::int64_t InstantOf(FILETIME time) {
  const std::int64_t count =
      std::int64_t{time.dwHighDateTime} << 32 | std::int64_t{time.dwLowDateTime};
  return count / 10'000'000 - 11'644'473'600;
}

/// "NT AUTHORITY\SYSTEM"; a description for an unknown account.
std::string AccountName(PSID account) {
  std::array<wchar_t, 256> name{};
  std::array<wchar_t, 256> domain{};
  auto nameChars = static_cast<DWORD>(name.size());
  auto domainChars = static_cast<DWORD>(domain.size());
  SID_NAME_USE use{};
  if (!LookupAccountSidW(nullptr, account, name.data(), &nameChars, domain.data(), &domainChars,
                         &use)) {
    return "an account that no longer exists";
  }
  return (domainChars > 0 ? ToUtf8(domain.data()) + "\\" : "") + ToUtf8(name.data());
}

}  // namespace

PlaceFacts ReadPlace(const std::wstring& path) {
  PlaceFacts facts;
  const DWORD attributes = GetFileAttributesW(path.c_str());
  facts.state = StateOf(path, attributes);
  if (facts.state != State::kPlain && facts.state != State::kFolder) return facts;
  facts.isWritable = IsWritable(path, attributes);
  WIN32_FILE_ATTRIBUTE_DATA data{};
  if (GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data)) {
    facts.changedInstant = InstantOf(data.ftLastWriteTime);
  }
  return facts;
}

std::vector<std::string> ReadWriters(const std::wstring& folder) {
  ACL* list = nullptr;
  void* descriptor = nullptr;
  if (GetNamedSecurityInfoW(folder.c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                            nullptr, &list, nullptr, &descriptor) != ERROR_SUCCESS) {
    return {};
  }
  const UniqueLocalBlock block(descriptor);
  // Without a list every account has all rights.
  if (list == nullptr) return {"Everyone"};
  std::vector<std::string> writers;
  for (DWORD i = 0; i < list->AceCount; ++i) {
    void* entry = nullptr;
    if (!GetAce(list, i, &entry)) continue;
    auto* allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
    if (allowed->Header.AceType != ACCESS_ALLOWED_ACE_TYPE) continue;
    if ((allowed->Mask & (FILE_ADD_FILE | GENERIC_WRITE | GENERIC_ALL)) == 0) continue;
    const std::string name = AccountName(&allowed->SidStart);
    if (std::ranges::find(writers, name) == writers.end()) writers.push_back(name);
  }
  return writers;
}

}  // namespace WattleafHost
