#include "security/trust/zq_authenticode_helper.h"

#include <windows.h>

#include <aclapi.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "logging/trace_logger.h"
#include "platform/win32/owners.h"
#include "security/trust/path_rules.h"
#include "security/trust/util_helper.h"

namespace Zq::Gantry::Security {

namespace {

using Logging::LogManager;
using Server::Services::UtilHelper;

constexpr char kFunctionName[] = "Zq::Gantry::Security::ZQAuthenticodeHelper::IsPathAllowed";
constexpr wchar_t kNoComponent[] = L"";
constexpr int kOwnershipAttempts = 5;
constexpr DWORD kAttemptPauseMilliseconds = 250;

bool LiesBelow(const wchar_t* root, const std::wstring& expanded) {
  const std::wstring expandedRoot = UtilHelper::GetFullExpandedPath(root, kNoComponent);
  // Kept on purpose: a root that cannot be expanded is empty, and every path begins with it (test
  // IsPathAllowed.AllowsEveryPathWhenARootCannotBeExpanded).
  if (UtilHelper::BeginsWith(expanded, expandedRoot)) return true;
  LogManager::GetLogger()->LogError(L"%S - BeginsWith() failed [%s] [%s]", kFunctionName,
                                    expanded.c_str(), expandedRoot.c_str());
  return false;
}

/// Reads the folder's access list several times, since it may be in the middle of a change.
bool IsControlledBySystem(const std::wstring& folder) {
  for (int attempt = 1; attempt <= kOwnershipAttempts; ++attempt) {
    if (ZQAuthenticodeHelper::CheckForFullConrolByTrustedInstallAndSystem(folder.c_str())) {
      return true;
    }
    const DWORD error = GetLastError();
    // Kept on purpose: the text names one call, though the list may just lack an entry (test
    // IsPathAllowedInPackagedFolder.TriesFiveTimesWhenTheListLacksAnEntry).
    LogManager::GetLogger()->LogError(
        L"Security - GetNamedSecurityInfo - Failed %d of %d times. Error Code = %d", attempt,
        kOwnershipAttempts, static_cast<int>(error));
    if (attempt < kOwnershipAttempts) Sleep(kAttemptPauseMilliseconds);
  }
  return false;
}

/// Which of the two required accounts has full control.
struct FullControl {
  bool trustedInstaller = false;
  bool system = false;
};

/// The account of an access entry: name and domain as the last successful look-up wrote them.
class AccountLookup {
 public:
  void Look(PSID identifier) {
    // Never more than the buffers hold, even if the previous look-up returned a larger size.
    nameChars_ = std::min(nameChars_, kAccountChars);
    domainChars_ = std::min(domainChars_, kAccountChars);
    SID_NAME_USE use{};
    // Kept on purpose: the result is ignored, and the sizes are those that the previous look-up
    // wrote, 0 at first (tests AccountLookup.*).
    LookupAccountSidW(/*systemName=*/nullptr, identifier, name_.data(), &nameChars_, domain_.data(),
                      &domainChars_, &use);
  }

  [[nodiscard]] bool Is(std::wstring_view domain, std::wstring_view name) const {
    return domain == domain_.data() && name == name_.data();
  }

 private:
  /// More than any account or domain name takes.
  static constexpr DWORD kAccountChars = 1024;

  DWORD nameChars_ = 0;
  DWORD domainChars_ = 0;
  // One more than the size passed to a look-up, so that the text is terminated.
  std::array<wchar_t, kAccountChars + 1> name_{};
  std::array<wchar_t, kAccountChars + 1> domain_{};
};

void JudgeEntry(ACL* list, DWORD index, AccountLookup& account, FullControl& control) {
  void* entry = nullptr;
  if (!GetAce(list, index, &entry)) return;
  if (static_cast<const ACE_HEADER*>(entry)->AceType != ACCESS_ALLOWED_ACE_TYPE) return;

  auto* allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
  account.Look(&allowed->SidStart);
  // Kept on purpose: a mask that spells out every right is not full control (test
  // CheckForFullConrolByTrustedInstallAndSystem.RefusesAMaskOfEveryRightWithoutGenericAll).
  if ((allowed->Mask & GENERIC_ALL) == 0) return;
  if (account.Is(L"NT SERVICE", L"TrustedInstaller")) {
    control.trustedInstaller = true;
  } else if (account.Is(L"NT AUTHORITY", L"SYSTEM")) {
    control.system = true;
  }
}

void JudgeAccessList(const wchar_t* path, FullControl& control) {
  PSID owner = nullptr;
  PSID group = nullptr;
  ACL* list = nullptr;
  Platform::UniqueLocalBlock descriptor;
  const DWORD result = GetNamedSecurityInfoW(
      const_cast<wchar_t*>(path), SE_FILE_OBJECT,
      OWNER_SECURITY_INFORMATION | GROUP_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION, &owner,
      &group, &list, /*sacl=*/nullptr, descriptor.out());
  // Kept on purpose: the descriptor is never freed (test
  // CheckForFullConrolByTrustedInstallAndSystem.NeverFreesTheDescriptor).
  static_cast<void>(descriptor.release());
  if (result != ERROR_SUCCESS || list == nullptr) return;

  AccountLookup account;
  // Kept on purpose: the loop goes on after both accounts are found (test
  // CheckForFullConrolByTrustedInstallAndSystem.WalksTheWholeListAfterBothAccountsAreFound).
  for (DWORD index = 0; index < list->AceCount; ++index) JudgeEntry(list, index, account, control);
}

}  // namespace

bool ZQAuthenticodeHelper::IsPathAllowed(const wchar_t* path) {
  const std::wstring expanded = UtilHelper::GetFullExpandedPath(path, kNoComponent);
  const auto liesBelow = [&expanded](const wchar_t* root) { return LiesBelow(root, expanded); };
  if (std::any_of(AllowedRootPaths.begin(), AllowedRootPaths.end(), liesBelow)) return true;

  const std::optional<std::wstring> folder = TryFindPackagedFolder(expanded);
  if (!folder) {
    LogManager::GetLogger()->LogError(L"%S - Didn't find substring [%s] in [%s]", kFunctionName,
                                      kPackagedMarker.data(), expanded.c_str());
    return false;
  }
  return IsControlledBySystem(*folder);
}

bool ZQAuthenticodeHelper::CheckForFullConrolByTrustedInstallAndSystem(const wchar_t* path) {
  FullControl control;
  try {
    JudgeAccessList(path, control);
  } catch (...) {
    LogManager::GetLogger()->LogError(
        L"Exception in CheckForFullConrolByTrustedInstallAndSystem().");
  }
  return control.trustedInstaller && control.system;
}

}  // namespace Zq::Gantry::Security
