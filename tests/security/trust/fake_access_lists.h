#pragma once

#include <windows.h>

#include <aclapi.h>

#include <cstdint>
#include <string>
#include <vector>

#include "import_patch.h"
#include "platform/win32/owners.h"

namespace TestSupport {

using AccountId = std::vector<std::uint8_t>;  ///< a security identifier in its binary form

[[nodiscard]] AccountId TrustedInstallerId();
[[nodiscard]] AccountId SystemId();
[[nodiscard]] AccountId EveryoneId();

/// GENERIC_ALL, the one bit that counts as full control.
inline constexpr DWORD kFullControl = 0x10000000;

/// An access list in memory, made with the system's own calls.
class AccessList {
 public:
  AccessList();

  AccessList& Allow(AccountId account, DWORD mask);
  AccessList& Deny(AccountId account, DWORD mask);
  /// An entry of the layout of ACCESS_ALLOWED_ACE with any type byte.
  AccessList& Add(BYTE type, AccountId account, DWORD mask);

  [[nodiscard]] ACL* Get() { return reinterpret_cast<ACL*>(memory_.data()); }

 private:
  std::vector<std::uint32_t> memory_;  // access lists are aligned to 4 bytes
};

/// Fakes GetNamedSecurityInfoW and LookupAccountSidW while this object exists, because a test
/// cannot make TrustedInstaller the owner of a file and account names differ between machines. A
/// look-up behaves as documented: a size that is too small fails and writes the size needed,
/// terminator included; a success writes the lengths without it. One at a time.
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
  struct Query {
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

  // The answers.
  ACL* list = nullptr;
  DWORD result = ERROR_SUCCESS;
  DWORD lastError = 0;
  int failures = 0;               ///< the first so many queries fail with ERROR_FILE_NOT_FOUND
  bool ignoreSizes = false;       ///< look-ups succeed with any buffer size
  DWORD neededChars = 0;          ///< if not 0, each look-up fails and requests this size
  std::vector<Account> accounts;  ///< look-ups of others fail and write nothing

  // The calls.
  std::vector<Query> queries;
  std::vector<Lookup> lookups;
  /// The descriptors handed out, each a block of the local heap; freed at the end.
  std::vector<Zq::Gantry::Platform::UniqueLocalBlock> descriptors;

 private:
  static DWORD WINAPI AnswerSecurity(LPWSTR path, SE_OBJECT_TYPE type,
                                     SECURITY_INFORMATION information, PSID* owner, PSID* group,
                                     PACL* list, PACL* audit, PSECURITY_DESCRIPTOR* descriptor);
  static BOOL WINAPI AnswerLookup(LPCWSTR system, PSID id, LPWSTR name, LPDWORD nameChars,
                                  LPWSTR domain, LPDWORD domainChars, SID_NAME_USE* use);
  [[nodiscard]] BOOL Look(const Account& account, LPWSTR name, DWORD& nameChars, LPWSTR domain,
                          DWORD& domainChars) const;

  Standin::ImportPatch security_;
  Standin::ImportPatch lookup_;
};

}  // namespace TestSupport
