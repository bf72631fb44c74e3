#include "security/access/rpc_security_helper.h"

#include <windows.h>

#include <gmock/gmock.h>

#include <cstring>

#include "security/access/caller_identity_fixture.h"
#include "support/import_watch.h"

// A caller that can be identified; every system call is faked.
namespace Zq::Gantry::Security {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace TestSupport;

TEST_F(GetPFNOfCaller, ReturnsThePackageFamilyNameOfTheClient) { EXPECT_EQ(CallerName(), kName); }

TEST_F(GetPFNOfCaller, ImpersonatesQueriesClosesAndReverts) {
  CallerName();
  EXPECT_THAT(fake_.order, ElementsAre("query", "query", "open", "impersonate", "length of 1111",
                                       "name of 1111", "close 1111", "revert"));
}

TEST_F(GetPFNOfCaller, MakesNoOtherSystemCall) {
  const ImportWatch watch;
  CallerName();
  EXPECT_THAT(watch.Calls(),
              ElementsAre("RpcServerInqCallAttributesW", "RpcServerInqCallAttributesW",
                          "OpenProcess", "RpcImpersonateClient", "GetPackageFamilyName",
                          "GetPackageFamilyName", "CloseHandle", "RpcRevertToSelf"));
}

TEST_F(GetPFNOfCaller, LogsNothingForTheSmallBufferOfTheFirstNameQuery) {
  fake_.lengthStatus = 122;
  EXPECT_EQ(CallerName(), kName);
  EXPECT_THAT(log_.Records(), IsEmpty());
}

TEST_F(GetPFNOfCaller, QueriesTwiceWithVersionThreeForTheProcessIdOnly) {
  CallerName();
  ASSERT_EQ(fake_.queries.size(), 2U);
  for (const std::vector<unsigned char>& attributes : fake_.queries) {
    unsigned int version = 0;
    unsigned int flags = 0;
    std::memcpy(&version, attributes.data(), 4);
    std::memcpy(&flags, attributes.data() + 4, 4);
    EXPECT_EQ(version, 3U);
    EXPECT_EQ(flags, 16U);
    for (std::size_t i = 8; i < 120; ++i) EXPECT_EQ(attributes[i], 0) << i;
  }
}

TEST_F(GetPFNOfCaller, QueriesAndImpersonatesWithoutABinding) {
  CallerName();
  EXPECT_THAT(fake_.bindings, ElementsAre(nullptr, nullptr, nullptr));
}

TEST_F(GetPFNOfCaller, OpensTheProcessForALimitedQueryWithoutInheritance) {
  CallerName();
  EXPECT_THAT(fake_.opened, ElementsAre(0x1000U, 0U, kClient));
}

TEST_F(GetPFNOfCaller, OpensAProcessWhoseIdTakesAll32Bits) {
  fake_.client = 0xFFFFFFFC;
  EXPECT_EQ(CallerName(), kName);
  EXPECT_THAT(fake_.opened, ElementsAre(0x1000U, 0U, 0xFFFFFFFCU));
}

TEST_F(GetPFNOfCaller, QueriesTheLengthFirstAndThenFillsABufferOfThatLength) {
  CallerName();
  EXPECT_THAT(fake_.lengths, ElementsAre(0U, 23U));
  ASSERT_EQ(fake_.buffers.size(), 2U);
  EXPECT_EQ(fake_.buffers[0], nullptr);
  EXPECT_NE(fake_.buffers[1], nullptr);
}

TEST_F(GetPFNOfCaller, RemovesEveryNullCharacter) {
  fake_.name = std::wstring(L"\0So\0\0me.App\0_id\0\0", 17);
  EXPECT_EQ(CallerName(), L"Some.App_id");
}

TEST_F(GetPFNOfCaller, KeepsEveryCharacterOfANameWithoutATerminator) {
  fake_.name = L"Some.App_id";
  EXPECT_EQ(CallerName(), L"Some.App_id");
}

TEST_F(GetPFNOfCaller, ReturnsOnlyTheCharactersThatTheSystemWrote) {
  fake_.written = 4;
  EXPECT_EQ(CallerName(), L"Some");
  fake_.ClearRecords();
  fake_.written = 0;
  EXPECT_EQ(CallerName(), L"");
  EXPECT_THAT(log_.Records(), IsEmpty());
}

TEST_F(GetPFNOfCaller, IsEmptyAndLogsNothingForALengthOfZero) {
  fake_.name.clear();
  fake_.lengthStatus = 0;
  EXPECT_EQ(CallerName(), L"");
  EXPECT_THAT(log_.Records(), IsEmpty());
  EXPECT_THAT(fake_.lengths, ElementsAre(0U, 0U));
  EXPECT_THAT(fake_.closed, ElementsAre(FakeCaller::Handle(0x1111)));
}

TEST_F(GetPFNOfCaller, ContinuesWhenTheFirstNameQuerySucceeds) {
  fake_.lengthStatus = 0;
  EXPECT_EQ(CallerName(), kName);
  EXPECT_THAT(log_.Records(), IsEmpty());
}

TEST_F(GetPFNOfCaller, LeavesTheObjectUnchanged) {
  helper_.ClientProcessHandles[7] = FakeCaller::Handle(0x7777);
  helper_.ExtraText = L"kept";
  CallerName();
  EXPECT_EQ(helper_.ClientProcessHandles.size(), 1U);
  EXPECT_EQ(helper_.ExtraText, L"kept");
  fake_.ClearRecords();
  EXPECT_EQ(CallerName(), kName) << "the second time";
}

TEST_F(GetPFNOfCaller, ReturnsTheNameEvenWhenRevertingFails) {
  fake_.revertStatus = 1702;
  EXPECT_EQ(CallerName(), kName);
  EXPECT_THAT(log_.Records(), IsEmpty());
}

}  // namespace
}  // namespace Zq::Gantry::Security
