#include "security/trust/zq_authenticode_helper.h"

#include <windows.h>

#include <gmock/gmock.h>

#include "security/trust/fake_access_lists.h"
#include "support/log_capture.h"

// The arguments of each LookupAccountSidW call and the effect of its failures. The ownership check
// keeps these oddities on purpose, because they decide which access lists pass.
namespace Zq::Gantry::Security {
namespace {

using testing::ElementsAre;
using testing::Pair;
using TestSupport::AccessList;
using TestSupport::EveryoneId;
using TestSupport::FakeAccessLists;
using TestSupport::kFullControl;
using TestSupport::SystemId;
using TestSupport::TrustedInstallerId;

class AccountLookup : public testing::Test {
 protected:
  bool Check(AccessList& list) {
    fake_.list = list.Get();
    return ZQAuthenticodeHelper::CheckForFullConrolByTrustedInstallAndSystem(L"D:\\WindowsApps");
  }

  /// The sizes of name and domain in characters, as each look-up got them.
  std::vector<std::pair<DWORD, DWORD>> SizesPassed() const {
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
  // "TrustedInstaller" needs 16 + 1 and "NT SERVICE" 10 + 1, too little for "NT AUTHORITY", which
  // needs 12 + 1.
  EXPECT_THAT(SizesPassed(), ElementsAre(Pair(0U, 0U), Pair(17U, 11U)));
}

TEST_F(AccountLookup, EachCallGetsTheSizesThatThePreviousOneLeft) {
  AccessList list;
  EXPECT_TRUE(Check(list.Allow(TrustedInstallerId(), kFullControl)
                        .Allow(TrustedInstallerId(), kFullControl)
                        .Allow(SystemId(), kFullControl)
                        .Allow(SystemId(), kFullControl)));
  // A successful call writes the lengths without terminator.
  EXPECT_THAT(SizesPassed(),
              ElementsAre(Pair(0U, 0U), Pair(17U, 11U), Pair(16U, 10U), Pair(7U, 13U)));
}

TEST_F(AccountLookup, SizesStartAtZeroInEachCheck) {
  AccessList list;
  list.Allow(SystemId(), kFullControl).Allow(SystemId(), kFullControl);
  Check(list);
  Check(list);
  EXPECT_THAT(SizesPassed(), ElementsAre(Pair(0U, 0U), Pair(7U, 13U), Pair(0U, 0U), Pair(7U, 13U)));
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
  // The look-up of Everyone fails: its full control counts for SYSTEM, whose own entry has none.
  fake_.accounts.pop_back();
  EXPECT_TRUE(Check(list.Allow(TrustedInstallerId(), kFullControl)
                        .Allow(TrustedInstallerId(), kFullControl)
                        .Allow(SystemId(), 0)
                        .Allow(SystemId(), 0)
                        .Allow(EveryoneId(), kFullControl)));
}

TEST_F(AccountLookup, StartsFromEmptyNames) {
  // Every look-up fails, so none writes a name.
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
  EXPECT_THAT(SizesPassed(), ElementsAre(Pair(0U, 0U), Pair(1024U, 1024U), Pair(1024U, 1024U)));
}

TEST_F(AccountLookup, ALongNameIsNotTakenForAnotherAccount) {
  fake_.accounts.back().name = std::wstring(1000, L'n');
  AccessList list;
  EXPECT_FALSE(Check(list.Allow(EveryoneId(), kFullControl).Allow(EveryoneId(), kFullControl)));
  EXPECT_THAT(SizesPassed(), ElementsAre(Pair(0U, 0U), Pair(1001U, 1U)));
}

}  // namespace
}  // namespace Zq::Gantry::Security
