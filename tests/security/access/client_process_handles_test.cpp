#include "security/access/rpc_security_helper.h"

#include <windows.h>

#include <gmock/gmock.h>

#include "security/access/caller_identity_fixture.h"

// The handles of client processes that the host holds.
namespace Zq::Gantry::Security {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace TestSupport;

class GetPFNOfCallerWithHostHandle : public GetPFNOfCaller {
 protected:
  GetPFNOfCallerWithHostHandle() {
    fake_.process = nullptr;
    helper_.ClientProcessHandles[kClient] = FakeCaller::Handle(0x7777);
  }
};

TEST_F(GetPFNOfCallerWithHostHandle, NamesAClientWhoseProcessCannotBeOpened) {
  for (const HANDLE failed : {HANDLE{nullptr}, INVALID_HANDLE_VALUE}) {
    fake_.process = failed;
    fake_.ClearRecords();
    EXPECT_EQ(CallerName(), kName);
    EXPECT_THAT(log_.Records(), IsEmpty());
    EXPECT_THAT(fake_.order, ElementsAre("query", "query", "open", "duplicate", "impersonate",
                                         "length of 2222", "name of 2222", "close 2222", "revert"));
  }
}

TEST_F(GetPFNOfCallerWithHostHandle, DuplicatesTheHandleForALimitedQueryWithoutInheritance) {
  CallerName();
  EXPECT_THAT(fake_.duplicatedFrom,
              ElementsAre(GetCurrentProcess(), FakeCaller::Handle(0x7777), GetCurrentProcess()));
  EXPECT_THAT(fake_.duplicatedWith, ElementsAre(0x1000U, 0U, 0U));
}

TEST_F(GetPFNOfCallerWithHostHandle, DuplicatesNothingWhenTheProcessCanBeOpened) {
  fake_.process = FakeCaller::Handle(0x1111);
  EXPECT_EQ(CallerName(), kName);
  EXPECT_THAT(fake_.duplicatedFrom, IsEmpty());
}

TEST_F(GetPFNOfCallerWithHostHandle, IgnoresAHandleOfAnotherProcessId) {
  helper_.ClientProcessHandles.clear();
  helper_.ClientProcessHandles[kClient + 4] = FakeCaller::Handle(0x7777);
  EXPECT_EQ(CallerName(), L"");
  ExpectFailure(L"OpenProcess yielded null or invalid handle", L"5");
  EXPECT_THAT(fake_.duplicatedFrom, IsEmpty());
}

TEST_F(GetPFNOfCallerWithHostHandle, IsEmptyWhenTheHandleCannotBeDuplicated) {
  fake_.duplicated = FALSE;
  for (const HANDLE left : {HANDLE{nullptr}, INVALID_HANDLE_VALUE, FakeCaller::Handle(0x2222)}) {
    fake_.copy = left;
    log_.Clear();
    EXPECT_EQ(CallerName(), L"") << "the handle left by the failed call is not used";
    ExpectFailure(L"OpenProcess yielded null or invalid handle", L"5");
  }
  EXPECT_THAT(fake_.closed, IsEmpty());
}

TEST_F(GetPFNOfCallerWithHostHandle, IsEmptyWhenTheDuplicateIsNoHandle) {
  for (const HANDLE copy : {HANDLE{nullptr}, INVALID_HANDLE_VALUE}) {
    fake_.copy = copy;
    log_.Clear();
    EXPECT_EQ(CallerName(), L"");
    ExpectFailure(L"OpenProcess yielded null or invalid handle", L"5");
  }
  EXPECT_THAT(fake_.closed, IsEmpty());
}

TEST_F(GetPFNOfCallerWithHostHandle, ClosesTheDuplicateOnly) {
  CallerName();
  EXPECT_THAT(fake_.closed, ElementsAre(FakeCaller::Handle(0x2222)));
  EXPECT_EQ(helper_.ClientProcessHandles.at(kClient), FakeCaller::Handle(0x7777));
}

TEST_F(GetPFNOfCaller, OpensProcessZeroWhenTheSecondQueryFails) {
  fake_.queryStatus = {RPC_S_OK, 1725};
  EXPECT_EQ(CallerName(), L"");
  ExpectFailure(L"OpenProcess yielded null or invalid handle", L"5");
  EXPECT_THAT(fake_.opened, ElementsAre(0x1000U, 0U, 0U));
}

TEST_F(GetPFNOfCaller, UsesTheHostsHandleOfProcessZeroWhenTheSecondQueryFails) {
  fake_.queryStatus = {RPC_S_OK, 1725};
  helper_.ClientProcessHandles[0] = FakeCaller::Handle(0x7777);
  EXPECT_EQ(CallerName(), kName);
  EXPECT_EQ(fake_.duplicatedFrom.at(1), FakeCaller::Handle(0x7777));
}

TEST_F(GetPFNOfCaller, DuplicatesAPseudoHandleOfTheHost) {
  fake_.process = nullptr;
  helper_.ClientProcessHandles[kClient] = GetCurrentProcess();
  EXPECT_EQ(CallerName(), kName);
  EXPECT_EQ(fake_.duplicatedFrom.at(1), GetCurrentProcess());
}

}  // namespace
}  // namespace Zq::Gantry::Security
