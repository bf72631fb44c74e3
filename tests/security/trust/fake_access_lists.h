#pragma once

#include <windows.h>

#include <aclapi.h>

#include <cstdint>
#include <string>
#include <vector>

#include "import_patch.h"

namespace TestSupport {

using AccountId = std::vector<std::uint8_t>;  ///< a security identifier in its binary form

AccountId TrustedInstallerId();
AccountId SystemId();
AccountId EveryoneId();

/// An access list in memory, made with the system's own calls.
class AccessList {
 public:
  AccessList();

  AccessList& Allow(AccountId account, DWORD mask);
  AccessList& Deny(AccountId account, DWORD mask);
  /// An entry of the plain shape with any type byte.
  AccessList& Add(BYTE type, AccountId account, DWORD mask);

  ACL* Get() { return reinterpret_cast<ACL*>(memory_.data()); }

 private:
  std::vector<std::uint32_t> memory_;  // access lists stand on 4-byte bounds
};

/// Fakes GetNamedSecurityInfoW and LookupAccountSidW for as long as it lives: the files of a test
/// cannot be given to TrustedInstaller, and account names differ between machines. A look-up
/// behaves as documented: too small a size fails and leaves the size that is needed, terminator
/// included; a success leaves the lengths without it.
class FakeAccessLists {
 public:
  FakeAccessLists();
  FakeAccessLists(const FakeAccessLists&) = delete;
  FakeAccessLists& operator=(const FakeAccessLists&) = delete;
  ~FakeAccessLists();

  struct Account {
    AccountId id;
    std::wstring domain;
    std::wstring name;
  };
  struct Question {
    std::wstring path;
    int type;
    DWORD information;
    bool wantsAuditList;
  };
  struct Lookup {
    bool onLocalMachine;
    DWORD nameChars;
    DWORD domainChars;
  };

  // What is answered.
  ACL* list = nullptr;
  DWORD result = ERROR_SUCCESS;
  DWORD lastError = 0;
  int failures = 0;          ///< so many questions give ERROR_FILE_NOT_FOUND before the list comes
  bool ignoreSizes = false;  ///< look-ups work whatever size they are told
  DWORD neededChars = 0;     ///< where not 0, each look-up fails and asks for so many characters
  std::vector<Account> accounts;  ///< all others are unknown, and their look-ups leave everything

  // What was asked.
  std::vector<Question> questions;
  std::vector<Lookup> lookups;
  std::vector<void*> descriptors;  ///< handed out, each a block of the local heap

 private:
  static DWORD WINAPI AnswerSecurity(LPWSTR path, SE_OBJECT_TYPE type,
                                     SECURITY_INFORMATION information, PSID* owner, PSID* group,
                                     PACL* list, PACL* audit, PSECURITY_DESCRIPTOR* descriptor);
  static BOOL WINAPI AnswerLookup(LPCWSTR system, PSID id, LPWSTR name, LPDWORD nameChars,
                                  LPWSTR domain, LPDWORD domainChars, SID_NAME_USE* use);
  BOOL Look(const Account& account, LPWSTR name, DWORD& nameChars, LPWSTR domain,
            DWORD& domainChars) const;

  Standin::ImportPatch security_;
  Standin::ImportPatch lookup_;
};

}  // namespace TestSupport
