#include <windows.h>

#include <aclapi.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "logging/trace_logger.h"
#include "platform/win32/owners.h"
#include "security/trust/zq_authenticode_helper.h"

namespace Zq::Gantry::Security {

namespace {

/// Which of the two required accounts has full control.
struct FullControl {
  bool trustedInstaller = false;
  bool system = false;
};

/// The account behind an access entry: name and domain as the last successful look-up left them.
class AccountLookup {
 public:
  void Look(PSID identifier) {
    // Never more than the buffers hold, whatever an earlier look-up asked for.
    nameChars_ = std::min(nameChars_, kAccountChars);
    domainChars_ = std::min(domainChars_, kAccountChars);
    SID_NAME_USE use{};
    // Kept on purpose: the result is not looked at, and the sizes are those that the look-up before
    // left behind, none at first (tests AccountLookup.*).
    LookupAccountSidW(/*systemName=*/nullptr, identifier, name_.data(), &nameChars_, domain_.data(),
                      &domainChars_, &use);
  }

  bool Is(std::wstring_view domain, std::wstring_view name) const {
    return domain == domain_.data() && name == name_.data();
  }

 private:
  /// More than any account or domain name takes.
  static constexpr DWORD kAccountChars = 1024;

  DWORD nameChars_ = 0;
  DWORD domainChars_ = 0;
  // One more than a look-up is ever told: the text ends inside.
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
  // Kept on purpose: the walk goes on when both accounts are found.
  for (DWORD index = 0; index < list->AceCount; ++index) JudgeEntry(list, index, account, control);
}

}  // namespace

bool ZQAuthenticodeHelper::CheckForFullConrolByTrustedInstallAndSystem(const wchar_t* path) {
  FullControl control;
  try {
    JudgeAccessList(path, control);
  } catch (...) {
    Logging::LogManager::GetLogger()->LogError(
        L"Exception in CheckForFullConrolByTrustedInstallAndSystem().");
  }
  return control.trustedInstaller && control.system;
}

}  // namespace Zq::Gantry::Security
