#include "security/trust/zq_authenticode_helper.h"

#include <windows.h>

#include <stdexcept>

#include <gmock/gmock.h>

#include "security/trust/fake_access_lists.h"
#include "support/log_capture.h"
#include "support/temp_folder.h"

namespace Zq::Gantry::Security {
namespace {

using Standin::ImportPatch;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using TestSupport::AccessList;
using TestSupport::EveryoneId;
using TestSupport::FakeAccessLists;
using TestSupport::kFullControl;
using TestSupport::LogCapture;
using TestSupport::SystemId;
using TestSupport::TrustedInstallerId;

/// FILE_ALL_ACCESS, without GENERIC_ALL.
constexpr DWORD kEveryFileRight = 0x001F01FF;

/// Each look-up finds its account; account_lookup_test.cpp covers the effect of the buffer sizes.
class CheckForFullConrolByTrustedInstallAndSystem : public testing::Test {
 protected:
  CheckForFullConrolByTrustedInstallAndSystem() { fake_.ignoreSizes = true; }

  bool Check(AccessList& list) {
    fake_.list = list.Get();
    return ZQAuthenticodeHelper::CheckForFullConrolByTrustedInstallAndSystem(L"D:\\WindowsApps");
  }

  FakeAccessLists fake_;
  LogCapture log_;
};

TEST_F(CheckForFullConrolByTrustedInstallAndSystem, AcceptsFullControlOfBothAccountsInEitherOrder) {
  AccessList list;
  EXPECT_TRUE(
      Check(list.Allow(TrustedInstallerId(), kFullControl).Allow(SystemId(), kFullControl)));
  AccessList reversed;
  EXPECT_TRUE(
      Check(reversed.Allow(SystemId(), kFullControl).Allow(TrustedInstallerId(), kFullControl)));
  EXPECT_THAT(log_.Records(), IsEmpty());
}

TEST_F(CheckForFullConrolByTrustedInstallAndSystem, AcceptsAMaskWithMoreThanTheFullControlBit) {
  AccessList list;
  EXPECT_TRUE(Check(list.Allow(TrustedInstallerId(), kFullControl | kEveryFileRight)
                        .Allow(SystemId(), 0xF0000000)));
}

TEST_F(CheckForFullConrolByTrustedInstallAndSystem, RequestsOwnerGroupAndAccessListOfTheFile) {
  AccessList list;
  Check(list);
  ASSERT_EQ(fake_.queries.size(), 1U);
  EXPECT_EQ(fake_.queries[0].path, L"D:\\WindowsApps");
  EXPECT_EQ(fake_.queries[0].type, 1);
  EXPECT_EQ(fake_.queries[0].information, 7U);
  EXPECT_FALSE(fake_.queries[0].wantsAuditList);
}

TEST_F(CheckForFullConrolByTrustedInstallAndSystem, RefusesWhenAnAccountIsMissing) {
  AccessList empty;
  EXPECT_FALSE(Check(empty));
  AccessList systemOnly;
  EXPECT_FALSE(Check(systemOnly.Allow(SystemId(), kFullControl).Allow(SystemId(), kFullControl)));
  AccessList installerOnly;
  EXPECT_FALSE(Check(installerOnly.Allow(TrustedInstallerId(), kFullControl)));
  AccessList others;
  EXPECT_FALSE(Check(others.Allow(EveryoneId(), kFullControl)));
  EXPECT_THAT(log_.Records(), IsEmpty());
}

TEST_F(CheckForFullConrolByTrustedInstallAndSystem, RefusesAnEntryOfAnotherTypeForEitherAccount) {
  for (const BYTE type : std::initializer_list<BYTE>{1, 2, 5, 9, 255}) {
    AccessList installer;
    EXPECT_FALSE(Check(
        installer.Add(type, TrustedInstallerId(), kFullControl).Allow(SystemId(), kFullControl)));
    AccessList system;
    EXPECT_FALSE(Check(
        system.Allow(TrustedInstallerId(), kFullControl).Add(type, SystemId(), kFullControl)));
  }
  EXPECT_EQ(fake_.lookups.size(), 10U);  // only the entries that allow are looked up
}

TEST_F(CheckForFullConrolByTrustedInstallAndSystem, IgnoresADenyingEntry) {
  AccessList list;
  EXPECT_TRUE(Check(list.Deny(SystemId(), kFullControl)
                        .Allow(TrustedInstallerId(), kFullControl)
                        .Allow(SystemId(), kFullControl)));
}

TEST_F(CheckForFullConrolByTrustedInstallAndSystem, RefusesAMaskOfEveryRightWithoutGenericAll) {
  AccessList list;
  EXPECT_FALSE(
      Check(list.Allow(TrustedInstallerId(), kFullControl).Allow(SystemId(), kEveryFileRight)));
  AccessList installer;
  EXPECT_FALSE(
      Check(installer.Allow(TrustedInstallerId(), ~kFullControl).Allow(SystemId(), kFullControl)));
}

TEST_F(CheckForFullConrolByTrustedInstallAndSystem, ComparesNamesAndDomainsExactly) {
  using Account = FakeAccessLists::Account;
  const std::vector<Account> rows{
      {SystemId(), L"NT AUTHORITY", L"System"},
      {SystemId(), L"nt authority", L"SYSTEM"},
      {SystemId(), L"NT AUTHORITY", L"SYSTEM2"},
      {SystemId(), L"NT AUTHORITY ", L"SYSTEM"},
      {SystemId(), L"", L"SYSTEM"},
      {SystemId(), L"NT SERVICE", L"SYSTEM"},
      {SystemId(), L"NT AUTHORITY", L"SYSTE"},
      {SystemId(), L"NT AUTHORIT", L"SYSTEM"},
      {SystemId(), L"SYSTEM", L"NT AUTHORITY"},
  };
  for (const Account& row : rows) {
    fake_.accounts[1] = row;
    AccessList list;
    EXPECT_FALSE(
        Check(list.Allow(TrustedInstallerId(), kFullControl).Allow(SystemId(), kFullControl)));
  }
  fake_.accounts[1] = {SystemId(), L"NT AUTHORITY", L"SYSTEM"};
  fake_.accounts[0] = {TrustedInstallerId(), L"NT AUTHORITY", L"TrustedInstaller"};
  AccessList list;
  EXPECT_FALSE(
      Check(list.Allow(TrustedInstallerId(), kFullControl).Allow(SystemId(), kFullControl)));
}

TEST_F(CheckForFullConrolByTrustedInstallAndSystem,
       RefusesWhenTheAccessListCannotBeReadOrIsMissing) {
  AccessList good;
  good.Allow(TrustedInstallerId(), kFullControl).Allow(SystemId(), kFullControl);
  fake_.result = ERROR_ACCESS_DENIED;
  EXPECT_FALSE(Check(good));

  fake_.result = ERROR_SUCCESS;
  fake_.list = nullptr;
  EXPECT_FALSE(
      ZQAuthenticodeHelper::CheckForFullConrolByTrustedInstallAndSystem(L"D:\\WindowsApps"));
  EXPECT_THAT(fake_.lookups, IsEmpty());
  EXPECT_THAT(log_.Records(), IsEmpty());
}

TEST_F(CheckForFullConrolByTrustedInstallAndSystem, ContinuesAfterAnEntryThatCannotBeFetched) {
  static decltype(&GetAce) real = nullptr;
  const ImportPatch getAce(
      "GetAce", +[](PACL list, DWORD index, LPVOID* entry) -> BOOL {
        return index == 1 ? FALSE : real(list, index, entry);
      });
  real = getAce.Original<std::remove_pointer_t<decltype(real)>>();
  AccessList list;
  EXPECT_TRUE(Check(list.Allow(TrustedInstallerId(), kFullControl)
                        .Allow(EveryoneId(), kFullControl)
                        .Allow(SystemId(), kFullControl)));
  EXPECT_EQ(fake_.lookups.size(), 2U);
  AccessList lacking;
  EXPECT_FALSE(
      Check(lacking.Allow(TrustedInstallerId(), kFullControl).Allow(SystemId(), kFullControl)));
}

TEST_F(CheckForFullConrolByTrustedInstallAndSystem, WalksTheWholeListAfterBothAccountsAreFound) {
  AccessList list;
  EXPECT_TRUE(Check(list.Allow(TrustedInstallerId(), kFullControl)
                        .Allow(SystemId(), kFullControl)
                        .Allow(EveryoneId(), kFullControl)
                        .Allow(EveryoneId(), 0)));
  EXPECT_EQ(fake_.lookups.size(), 4U);
}

namespace {

template <bool isStandard>
BOOL WINAPI ThrowForTheThirdEntry(PACL list, DWORD index, LPVOID* entry) {
  if (index == 2 && isStandard) throw std::runtime_error("third entry");
  if (index == 2) throw 5;
  auto* bytes = reinterpret_cast<BYTE*>(list + 1);
  for (; index > 0; --index) bytes += reinterpret_cast<ACE_HEADER*>(bytes)->AceSize;
  *entry = bytes;
  return TRUE;
}

}  // namespace

TEST_F(CheckForFullConrolByTrustedInstallAndSystem, LogsAnExceptionAndKeepsTheAccountsFoundSoFar) {
  for (auto* const getAce : {&ThrowForTheThirdEntry<true>, &ThrowForTheThirdEntry<false>}) {
    log_.Clear();
    const ImportPatch patch("GetAce", getAce);
    const auto line =
        TestSupport::Error(L"Exception in CheckForFullConrolByTrustedInstallAndSystem().");
    AccessList late;
    EXPECT_FALSE(Check(late.Allow(TrustedInstallerId(), kFullControl)
                           .Allow(EveryoneId(), kFullControl)
                           .Allow(SystemId(), kFullControl)));
    EXPECT_THAT(log_.Records(), ElementsAre(line));

    AccessList early;
    EXPECT_TRUE(Check(early.Allow(TrustedInstallerId(), kFullControl)
                          .Allow(SystemId(), kFullControl)
                          .Allow(EveryoneId(), kFullControl)));
    EXPECT_THAT(log_.Records(), ElementsAre(line, line));
  }
}

TEST_F(CheckForFullConrolByTrustedInstallAndSystem, StillRefusesWhenASystemCallFails) {
  struct Failing {
    const char* call;
    ULONG_PTR (*answer)();
  };
  const auto failure = +[]() -> ULONG_PTR { return ERROR_ACCESS_DENIED; };
  const auto nothing = +[]() -> ULONG_PTR { return FALSE; };
  for (const Failing& row : {Failing{"GetNamedSecurityInfoW", failure}, Failing{"GetAce", nothing},
                             Failing{"LookupAccountSidW", nothing}}) {
    const ImportPatch patch(row.call, row.answer);
    AccessList lacking;
    EXPECT_FALSE(Check(lacking.Allow(SystemId(), kFullControl))) << row.call;
    AccessList others;
    EXPECT_FALSE(Check(others.Allow(EveryoneId(), kFullControl))) << row.call;
    AccessList spelledOut;
    EXPECT_FALSE(Check(
        spelledOut.Allow(TrustedInstallerId(), kEveryFileRight).Allow(SystemId(), kEveryFileRight)))
        << row.call;
    AccessList denying;
    EXPECT_FALSE(
        Check(denying.Deny(TrustedInstallerId(), kFullControl).Deny(SystemId(), kFullControl)))
        << row.call;
  }
}

TEST_F(CheckForFullConrolByTrustedInstallAndSystem, NeverFreesTheDescriptor) {
  static std::vector<HLOCAL> freed;
  const ImportPatch free(
      "LocalFree", +[](HLOCAL block) -> HLOCAL {
        freed.push_back(block);
        return nullptr;
      });
  AccessList list;
  EXPECT_TRUE(
      Check(list.Allow(TrustedInstallerId(), kFullControl).Allow(SystemId(), kFullControl)));
  ASSERT_EQ(fake_.descriptors.size(), 1U);
  EXPECT_THAT(freed, Not(Contains(fake_.descriptors[0].get())));
}

TEST(CheckForFullConrolByTrustedInstallAndSystemOnRealFolders,
     RefusesAnOrdinaryAMissingAndANullFolder) {
  const TestSupport::TempFolder folder;
  const LogCapture log;
  EXPECT_FALSE(
      ZQAuthenticodeHelper::CheckForFullConrolByTrustedInstallAndSystem(folder.Path().c_str()));
  EXPECT_FALSE(ZQAuthenticodeHelper::CheckForFullConrolByTrustedInstallAndSystem(
      folder.File(L"missing").c_str()));
  EXPECT_FALSE(ZQAuthenticodeHelper::CheckForFullConrolByTrustedInstallAndSystem(nullptr));
  EXPECT_THAT(log.Records(), IsEmpty());
}

}  // namespace
}  // namespace Zq::Gantry::Security
