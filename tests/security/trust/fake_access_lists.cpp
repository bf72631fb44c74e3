#include "security/trust/fake_access_lists.h"

#include <gtest/gtest.h>

namespace TestSupport {

namespace {

FakeAccessLists* currentAccessLists = nullptr;

AccountId MakeId(std::uint8_t authority, std::initializer_list<std::uint32_t> parts) {
  AccountId id{1, static_cast<std::uint8_t>(parts.size()), 0, 0, 0, 0, 0, authority};
  for (const std::uint32_t part : parts) {
    for (int shift = 0; shift < 32; shift += 8) {
      id.push_back(static_cast<std::uint8_t>(part >> shift));
    }
  }
  return id;
}

void CopyOut(const std::wstring& text, LPWSTR buffer, DWORD& chars) {
  text.copy(buffer, text.size());
  buffer[text.size()] = L'\0';
  chars = static_cast<DWORD>(text.size());
}

}  // namespace

AccountId TrustedInstallerId() {
  return MakeId(5, {80, 956008885, 3418522649, 1831038044, 1853292631, 2271478464});
}

AccountId SystemId() { return MakeId(5, {18}); }

AccountId EveryoneId() { return MakeId(1, {0}); }

AccessList::AccessList() : memory_(1024) {
  EXPECT_TRUE(InitializeAcl(Get(), static_cast<DWORD>(memory_.size() * 4), ACL_REVISION));
}

AccessList& AccessList::Allow(AccountId account, DWORD mask) {
  EXPECT_TRUE(AddAccessAllowedAce(Get(), ACL_REVISION, mask, account.data()));
  return *this;
}

AccessList& AccessList::Deny(AccountId account, DWORD mask) {
  EXPECT_TRUE(AddAccessDeniedAce(Get(), ACL_REVISION, mask, account.data()));
  return *this;
}

AccessList& AccessList::Add(BYTE type, AccountId account, DWORD mask) {
  Allow(std::move(account), mask);
  void* entry = nullptr;
  EXPECT_TRUE(GetAce(Get(), static_cast<DWORD>(Get()->AceCount - 1), &entry));
  static_cast<ACE_HEADER*>(entry)->AceType = type;
  return *this;
}

FakeAccessLists::FakeAccessLists()
    : accounts{{TrustedInstallerId(), L"NT SERVICE", L"TrustedInstaller"},
               {SystemId(), L"NT AUTHORITY", L"SYSTEM"},
               {EveryoneId(), L"", L"Everyone"}},
      security_("GetNamedSecurityInfoW", &AnswerSecurity),
      lookup_("LookupAccountSidW", &AnswerLookup) {
  currentAccessLists = this;
}

FakeAccessLists::~FakeAccessLists() { currentAccessLists = nullptr; }

DWORD WINAPI FakeAccessLists::AnswerSecurity(LPWSTR path, SE_OBJECT_TYPE type,
                                             SECURITY_INFORMATION information, PSID* owner,
                                             PSID* group, PACL* list, PACL* audit,
                                             PSECURITY_DESCRIPTOR* descriptor) {
  currentAccessLists->queries.push_back({path, type, information, audit != nullptr});
  SetLastError(currentAccessLists->lastError);
  if (currentAccessLists->failures > 0) {
    --currentAccessLists->failures;
    return ERROR_FILE_NOT_FOUND;
  }
  // Also on failure, so that the test fails if a caller uses the list without checking the result.
  *list = currentAccessLists->list;
  if (currentAccessLists->result != ERROR_SUCCESS) return currentAccessLists->result;
  *owner = nullptr;
  *group = nullptr;
  currentAccessLists->descriptors.emplace_back(LocalAlloc(LPTR, 64));
  *descriptor = currentAccessLists->descriptors.back().get();
  EXPECT_NE(*descriptor, nullptr) << "the caller must get a block that it could free";
  return ERROR_SUCCESS;
}

BOOL WINAPI FakeAccessLists::AnswerLookup(LPCWSTR system, PSID id, LPWSTR name, LPDWORD nameChars,
                                          LPWSTR domain, LPDWORD domainChars, SID_NAME_USE* use) {
  currentAccessLists->lookups.push_back({system == nullptr, *nameChars, *domainChars});
  if (currentAccessLists->neededChars != 0) {
    *nameChars = *domainChars = currentAccessLists->neededChars;
    return FALSE;
  }
  for (const Account& account : currentAccessLists->accounts) {
    if (!EqualSid(id, const_cast<std::uint8_t*>(account.id.data()))) continue;
    *use = SidTypeWellKnownGroup;
    return currentAccessLists->Look(account, name, *nameChars, domain, *domainChars);
  }
  SetLastError(ERROR_NONE_MAPPED);
  return FALSE;
}

BOOL FakeAccessLists::Look(const Account& account, LPWSTR name, DWORD& nameChars, LPWSTR domain,
                           DWORD& domainChars) const {
  const bool fits =
      ignoreSizes || (nameChars > account.name.size() && domainChars > account.domain.size());
  if (!fits) {
    nameChars = static_cast<DWORD>(account.name.size() + 1);
    domainChars = static_cast<DWORD>(account.domain.size() + 1);
    SetLastError(ERROR_INSUFFICIENT_BUFFER);
    return FALSE;
  }
  CopyOut(account.name, name, nameChars);
  CopyOut(account.domain, domain, domainChars);
  return TRUE;
}

}  // namespace TestSupport
