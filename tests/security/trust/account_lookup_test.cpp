#include <windows.h>

#include <gmock/gmock.h>

#include "security/trust/fake_access_lists.h"
#include "security/trust/zq_authenticode_helper.h"
#include "support/log_capture.h"

// What the look-up of an entry's account is told and what becomes of its failures: oddities of the
// ownership test that are kept, since they decide which access lists pass.
namespace Zq::Gantry::Security {
namespace {

using testing::ElementsAre;
using testing::Pair;
using TestSupport::AccessList;
using TestSupport::EveryoneId;
using TestSupport::FakeAccessLists;
using TestSupport::SystemId;
using TestSupport::TrustedInstallerId;

constexpr DWORD kFullControl = 0x10000000;

class AccountLookup : public testing::Test {
 protected:
  bool Check(AccessList& list) {
    fake_.list = list.Get();
    return ZQAuthenticodeHelper::CheckForFullConrolByTrustedInstallAndSystem(L"D:\\WindowsApps");
  }

  /// Characters that each look-up was told that name and domain may take.
  std::vector<std::pair<DWORD, DWORD>> ToldSizes() const {
    std::vector<std::pair<DWORD, DWORD>> sizes;
    for (const auto& lookup : fake_.lookups) {
      sizes.emplace_back(lookup.nameChars, lookup.domainChars);
    }
    return sizes;
  }

  FakeAccessLists fake_;
};

TEST_F(AccountLookup, QueriesTheLocalMachine) {
  AccessList list;
  Check(list.Allow(SystemId(), kFullControl));
  ASSERT_EQ(fake_.lookups.size(), 1U);
  EXPECT_TRUE(fake_.lookups[0].onLocalMachine);
}

TEST_F(AccountLookup, FirstCallGetsBufferSizesOfZero) {
  AccessList list;
  EXPECT_FALSE(
      Check(list.Allow(TrustedInstallerId(), kFullControl).Allow(SystemId(), kFullControl)));
  // TrustedInstaller asks for 16 + 1 and "NT SERVICE" for 10 + 1; that is too little for
  // "NT AUTHORITY", which takes 12 + 1.
  EXPECT_THAT(ToldSizes(), ElementsAre(Pair(0U, 0U), Pair(17U, 11U)));
}

TEST_F(AccountLookup, EachCallGetsTheSizesThatThePreviousOneLeft) {
  AccessList list;
  EXPECT_TRUE(Check(list.Allow(TrustedInstallerId(), kFullControl)
                        .Allow(TrustedInstallerId(), kFullControl)
                        .Allow(SystemId(), kFullControl)
                        .Allow(SystemId(), kFullControl)));
  // A success leaves the lengths without terminator.
  EXPECT_THAT(ToldSizes(),
              ElementsAre(Pair(0U, 0U), Pair(17U, 11U), Pair(16U, 10U), Pair(7U, 13U)));
}

TEST_F(AccountLookup, SizesStartAtZeroInEachCheck) {
  AccessList list;
  list.Allow(SystemId(), kFullControl).Allow(SystemId(), kFullControl);
  Check(list);
  Check(list);
  EXPECT_THAT(ToldSizes(), ElementsAre(Pair(0U, 0U), Pair(7U, 13U), Pair(0U, 0U), Pair(7U, 13U)));
}

TEST_F(AccountLookup, IsMadeForEntriesWithoutFullControlToo) {
  AccessList list;
  EXPECT_TRUE(Check(list.Allow(TrustedInstallerId(), 0)
                        .Allow(TrustedInstallerId(), kFullControl)
                        .Allow(SystemId(), 0)
                        .Allow(SystemId(), kFullControl)));
  EXPECT_EQ(fake_.lookups.size(), 4U);
}

TEST_F(AccountLookup, FailureKeepsTheAccountOfThePreviousEntry) {
  AccessList list;
  // Everyone is unknown here: with full control, it passes for SYSTEM, whose entry has none.
  fake_.accounts.pop_back();
  EXPECT_TRUE(Check(list.Allow(TrustedInstallerId(), kFullControl)
                        .Allow(TrustedInstallerId(), kFullControl)
                        .Allow(SystemId(), 0)
                        .Allow(SystemId(), 0)
                        .Allow(EveryoneId(), kFullControl)));
}

TEST_F(AccountLookup, StartsFromEmptyNames) {
  // No look-up ever writes a name.
  fake_.accounts.clear();
  AccessList list;
  EXPECT_FALSE(
      Check(list.Allow(TrustedInstallerId(), kFullControl).Allow(SystemId(), kFullControl)));
}

TEST_F(AccountLookup, NeverGetsSizesAboveItsBuffers) {
  fake_.neededChars = 0xFFFFFFFF;
  AccessList list;
  EXPECT_FALSE(Check(list.Allow(EveryoneId(), kFullControl)
                         .Allow(EveryoneId(), kFullControl)
                         .Allow(EveryoneId(), kFullControl)));
  EXPECT_THAT(ToldSizes(), ElementsAre(Pair(0U, 0U), Pair(1024U, 1024U), Pair(1024U, 1024U)));
}

TEST_F(AccountLookup, ALongNameIsNotTakenForAnotherAccount) {
  fake_.accounts.back().name = std::wstring(1000, L'n');
  AccessList list;
  EXPECT_FALSE(Check(list.Allow(EveryoneId(), kFullControl).Allow(EveryoneId(), kFullControl)));
  EXPECT_THAT(ToldSizes(), ElementsAre(Pair(0U, 0U), Pair(1001U, 1U)));
}

}  // namespace
}  // namespace Zq::Gantry::Security
