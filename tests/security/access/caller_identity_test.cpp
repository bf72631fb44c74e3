#include "security/access/rpc_security_helper.h"

#include <windows.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <new>
#include <ostream>
#include <stdexcept>
#include <system_error>

#include "fake_caller.h"
#include "support/import_watch.h"
#include "support/log_capture.h"

// Telling the caller, call by call, with every system call fake.
namespace Zq::Gantry::Security {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::StartsWith;
using TestSupport::Error;
using TestSupport::FakeCaller;
using TestSupport::ImportWatch;
using TestSupport::LogCapture;
using TestSupport::LogRecord;

constexpr DWORD kClient = FakeCaller::kClient;
constexpr wchar_t kName[] = L"Some.App_q7m3xk2tdw9pa";
constexpr LONG kNegative = -2147024891;  // a status whose highest bit is set

class CallerIdentity : public testing::Test {
 protected:
  std::wstring Ask() { return helper_.GetPFNOfCaller(); }

  /// The one line, of a failure that a status tells; the library puts its own words in between.
  void ExpectFailure(const std::wstring& text, const std::wstring& status) {
    const std::vector<LogRecord> records = log_.Records();
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0].level, Standin::LogLevel::kError);
    EXPECT_EQ(records[0].component, L"");
    EXPECT_THAT(records[0].text, StartsWith(L"RpcSecurityHelper::GetPFNOfCaller - " + text));
    EXPECT_THAT(records[0].text, EndsWith(L", Status: " + status));
  }

  RpcSecurityHelper helper_;
  FakeCaller fake_;
  LogCapture log_;
};

TEST_F(CallerIdentity, IsThePackageFamilyNameOfTheClient) { EXPECT_EQ(Ask(), kName); }

TEST_F(CallerIdentity, ImpersonatesThenAsksThenClosesThenReverts) {
  Ask();
  EXPECT_THAT(fake_.order,
              ElementsAre("query", "query", "open", "impersonate", "ask length of 1111",
                          "ask name of 1111", "close 1111", "revert"));
}

TEST_F(CallerIdentity, MakesNoOtherSystemCall) {
  const ImportWatch watch;
  Ask();
  EXPECT_THAT(watch.Calls(),
              ElementsAre("RpcServerInqCallAttributesW", "RpcServerInqCallAttributesW",
                          "OpenProcess", "RpcImpersonateClient", "GetPackageFamilyName",
                          "GetPackageFamilyName", "CloseHandle", "RpcRevertToSelf"));
}

TEST_F(CallerIdentity, WritesNoLineThoughTheFirstNameQueryIsToldThatItsBufferIsTooSmall) {
  fake_.lengthStatus = 122;
  EXPECT_EQ(Ask(), kName);
  EXPECT_THAT(log_.Records(), IsEmpty());
}

TEST_F(CallerIdentity, QueriesTwiceWithVersionThreeForTheProcessIdOnly) {
  Ask();
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

TEST_F(CallerIdentity, QueriesAndImpersonatesWithoutABinding) {
  Ask();
  EXPECT_THAT(fake_.bindings, ElementsAre(nullptr, nullptr, nullptr));
}

TEST_F(CallerIdentity, OpensTheProcessForALimitedQueryAndNotForHeirs) {
  Ask();
  EXPECT_THAT(fake_.opened, ElementsAre(0x1000U, 0U, kClient));
}

TEST_F(CallerIdentity, OpensTheProcessOfAClientWhoseIdTakesAll32Bits) {
  fake_.client = 0xFFFFFFFC;
  EXPECT_EQ(Ask(), kName);
  EXPECT_THAT(fake_.opened, ElementsAre(0x1000U, 0U, 0xFFFFFFFCU));
}

TEST_F(CallerIdentity, AsksForTheLengthWithoutABufferAndThenWithOneOfThatLength) {
  Ask();
  EXPECT_THAT(fake_.lengths, ElementsAre(0U, 23U));
  ASSERT_EQ(fake_.buffers.size(), 2U);
  EXPECT_EQ(fake_.buffers[0], nullptr);
  EXPECT_NE(fake_.buffers[1], nullptr);
}

TEST_F(CallerIdentity, RemovesZerosWhereverTheyLie) {
  fake_.name = std::wstring(L"\0So\0\0me.App\0_id\0\0", 17);
  EXPECT_EQ(Ask(), L"Some.App_id");
}

TEST_F(CallerIdentity, KeepsEveryCharacterOfANameWithoutATerminator) {
  fake_.name = L"Some.App_id";
  EXPECT_EQ(Ask(), L"Some.App_id");
}

TEST_F(CallerIdentity, HoldsNothingWhereTheSystemWritesLessThanItsLength) {
  fake_.written = 4;
  EXPECT_EQ(Ask(), L"Some");
  fake_.Forget();
  fake_.written = 0;
  EXPECT_EQ(Ask(), L"");
  EXPECT_THAT(log_.Records(), IsEmpty());
}

TEST_F(CallerIdentity, IsEmptyWithoutALineForALengthOfZero) {
  fake_.name.clear();
  fake_.lengthStatus = 0;
  EXPECT_EQ(Ask(), L"");
  EXPECT_THAT(log_.Records(), IsEmpty());
  EXPECT_THAT(fake_.lengths, ElementsAre(0U, 0U));
  EXPECT_THAT(fake_.closed, ElementsAre(FakeCaller::Handle(0x1111)));
}

TEST_F(CallerIdentity, GoesOnFromAFirstNameQueryThatAnswersZero) {
  fake_.lengthStatus = 0;
  EXPECT_EQ(Ask(), kName);
  EXPECT_THAT(log_.Records(), IsEmpty());
}

TEST_F(CallerIdentity, ChangesNothingOfTheObject) {
  helper_.ClientProcessHandles[7] = FakeCaller::Handle(0x7777);
  helper_.ExtraText = L"kept";
  Ask();
  EXPECT_EQ(helper_.ClientProcessHandles.size(), 1U);
  EXPECT_EQ(helper_.ExtraText, L"kept");
  fake_.Forget();
  EXPECT_EQ(Ask(), kName) << "and can be asked again";
}

// Failures, in the order of the steps.

TEST_F(CallerIdentity, AClientThatCannotBeToldHasNoName) {
  fake_.queryStatus = {1725, 1725};
  EXPECT_EQ(Ask(), L"");
  ExpectFailure(L"RpcServerInqCallAttributes failed", L"1725");
  EXPECT_THAT(fake_.order, ElementsAre("query"));
}

TEST_F(CallerIdentity, AClientWhoseProcessCannotBeOpenedHasNoName) {
  fake_.process = nullptr;
  EXPECT_EQ(Ask(), L"");
  ExpectFailure(L"OpenProcess yielded null or invalid handle", L"5");
  EXPECT_THAT(fake_.order, ElementsAre("query", "query", "open"));
}

TEST_F(CallerIdentity, TakesTheInvalidHandleForAFailureAsWell) {
  fake_.process = INVALID_HANDLE_VALUE;
  EXPECT_EQ(Ask(), L"");
  ExpectFailure(L"OpenProcess yielded null or invalid handle", L"5");
  EXPECT_THAT(fake_.order, ElementsAre("query", "query", "open")) << "nothing to close";
}

TEST_F(CallerIdentity, AClientThatCannotBeImpersonatedHasNoNameAndIsNotReverted) {
  fake_.impersonateStatus = 1348;
  EXPECT_EQ(Ask(), L"");
  ExpectFailure(L"Failed to impersonate client", L"1348");
  EXPECT_THAT(fake_.order, ElementsAre("query", "query", "open", "impersonate", "close 1111"));
}

TEST_F(CallerIdentity, AClientThatIsNoPackageHasNoName) {
  fake_.lengthStatus = 15700;
  EXPECT_EQ(Ask(), L"");
  ExpectFailure(L"GetPackageFamilyName failed", L"15700");
  EXPECT_THAT(fake_.order, ElementsAre("query", "query", "open", "impersonate",
                                       "ask length of 1111", "close 1111", "revert"));
}

TEST_F(CallerIdentity, NoOtherStatusOfTheFirstNameQueryIsTakenForASmallBuffer) {
  // Next to 122 in number (121, 123) or in meaning (24, 111, 234).
  for (const LONG status : {LONG{1}, LONG{24}, LONG{111}, LONG{121}, LONG{123}, LONG{234}}) {
    fake_.lengthStatus = status;
    fake_.Forget();
    log_.Clear();
    EXPECT_EQ(Ask(), L"");
    ExpectFailure(L"GetPackageFamilyName failed", std::to_wstring(status));
    EXPECT_EQ(fake_.lengths.size(), 1U) << status;
  }
}

TEST_F(CallerIdentity, ANegativeStatusIsWrittenWithItsSign) {
  fake_.lengthStatus = kNegative;
  EXPECT_EQ(Ask(), L"");
  ExpectFailure(L"GetPackageFamilyName failed", L"-2147024891");
}

TEST_F(CallerIdentity, AStatusIsPutIntoWordsByTheGenericCategory) {
  fake_.process = nullptr;
  Ask();
  const std::string words =
      std::system_error(5, std::generic_category(), "OpenProcess yielded null or invalid handle")
          .what();
  EXPECT_THAT(log_.Records(),
              ElementsAre(Error(L"RpcSecurityHelper::GetPFNOfCaller - " +
                                std::wstring(words.begin(), words.end()) + L", Status: 5")));
}

TEST_F(CallerIdentity, ANameThatCannotBeReadAfterItsLengthIsTheErrorFive) {
  for (const LONG status : {LONG{122}, LONG{15700}, LONG{6}}) {
    fake_.nameStatus = status;
    fake_.Forget();
    log_.Clear();
    EXPECT_EQ(Ask(), L"");
    EXPECT_THAT(log_.Records(),
                ElementsAre(Error(L"RpcSecurityHelper::GetPFNOfCaller - Caught error 5")));
    EXPECT_THAT(fake_.order,
                ElementsAre("query", "query", "open", "impersonate", "ask length of 1111",
                            "ask name of 1111", "close 1111", "revert"));
  }
}

TEST_F(CallerIdentity, LogsAFailureBeforeItClosesAndReverts) {
  static LogCapture* log = nullptr;
  static std::vector<std::size_t> linesAtClose;
  log = &log_;
  const Standin::ImportPatch close(
      "CloseHandle", +[](HANDLE) -> BOOL {
        linesAtClose.push_back(log->Records().size());
        return TRUE;
      });
  fake_.lengthStatus = 15700;
  Ask();
  EXPECT_THAT(linesAtClose, ElementsAre(1U));
}

TEST_F(CallerIdentity, RevertsAndClosesWhateverIsThrown) {
  const std::vector<void (*)()> throwers = {
      [] { throw std::bad_alloc(); },
      [] { throw std::runtime_error("anything"); },
      [] { throw "no exception object"; },
  };
  for (void (*thrower)() : throwers) {
    fake_.whileAsking = thrower;
    fake_.Forget();
    log_.Clear();
    EXPECT_EQ(Ask(), L"");
    EXPECT_THAT(
        log_.Records(),
        ElementsAre(Error(L"RpcSecurityHelper::GetPFNOfCaller - Unknown exception, Status: 8")));
    EXPECT_THAT(fake_.order, ElementsAre("query", "query", "open", "impersonate",
                                         "ask length of 1111", "close 1111", "revert"));
  }
}

// The handles that the host holds.

class KnownClient : public CallerIdentity {
 protected:
  KnownClient() {
    fake_.process = nullptr;
    helper_.ClientProcessHandles[kClient] = FakeCaller::Handle(0x7777);
  }
};

TEST_F(KnownClient, IsIdentifiedThoughItsProcessCannotBeOpened) {
  for (const HANDLE failed : {HANDLE{nullptr}, INVALID_HANDLE_VALUE}) {
    fake_.process = failed;
    fake_.Forget();
    EXPECT_EQ(Ask(), kName);
    EXPECT_THAT(log_.Records(), IsEmpty());
    EXPECT_THAT(fake_.order,
                ElementsAre("query", "query", "open", "duplicate", "impersonate",
                            "ask length of 2222", "ask name of 2222", "close 2222", "revert"));
  }
}

TEST_F(KnownClient, IsDuplicatedWithinThisProcessForALimitedQueryAndNotForHeirs) {
  Ask();
  EXPECT_THAT(fake_.duplicatedFrom,
              ElementsAre(GetCurrentProcess(), FakeCaller::Handle(0x7777), GetCurrentProcess()));
  EXPECT_THAT(fake_.duplicatedWith, ElementsAre(0x1000U, 0U, 0U));
}

TEST_F(KnownClient, IsNotLookedUpWhereItsProcessCanBeOpened) {
  fake_.process = FakeCaller::Handle(0x1111);
  EXPECT_EQ(Ask(), kName);
  EXPECT_THAT(fake_.duplicatedFrom, IsEmpty());
}

TEST_F(KnownClient, OfAnotherProcessIdIsNoHelp) {
  helper_.ClientProcessHandles.clear();
  helper_.ClientProcessHandles[kClient + 4] = FakeCaller::Handle(0x7777);
  EXPECT_EQ(Ask(), L"");
  ExpectFailure(L"OpenProcess yielded null or invalid handle", L"5");
  EXPECT_THAT(fake_.duplicatedFrom, IsEmpty());
}

TEST_F(KnownClient, WhoseHandleCannotBeDuplicatedHasNoName) {
  fake_.duplicated = FALSE;
  for (const HANDLE left : {HANDLE{nullptr}, INVALID_HANDLE_VALUE, FakeCaller::Handle(0x2222)}) {
    fake_.copy = left;
    log_.Clear();
    EXPECT_EQ(Ask(), L"") << "whatever the failed call has left";
    ExpectFailure(L"OpenProcess yielded null or invalid handle", L"5");
  }
  EXPECT_THAT(fake_.closed, IsEmpty());
}

TEST_F(KnownClient, WhoseDuplicateIsNoHandleHasNoName) {
  for (const HANDLE copy : {HANDLE{nullptr}, INVALID_HANDLE_VALUE}) {
    fake_.copy = copy;
    log_.Clear();
    EXPECT_EQ(Ask(), L"");
    ExpectFailure(L"OpenProcess yielded null or invalid handle", L"5");
  }
  EXPECT_THAT(fake_.closed, IsEmpty());
}

TEST_F(KnownClient, KeepsTheHandleThatTheHostHolds) {
  Ask();
  EXPECT_THAT(fake_.closed, ElementsAre(FakeCaller::Handle(0x2222)));
  EXPECT_EQ(helper_.ClientProcessHandles.at(kClient), FakeCaller::Handle(0x7777));
}

TEST_F(CallerIdentity, TakesAClientThatCannotBeToldTheSecondTimeForProcessZero) {
  fake_.queryStatus = {RPC_S_OK, 1725};
  EXPECT_EQ(Ask(), L"");
  ExpectFailure(L"OpenProcess yielded null or invalid handle", L"5");
  EXPECT_THAT(fake_.opened, ElementsAre(0x1000U, 0U, 0U));
}

TEST_F(CallerIdentity, FindsTheEntryOfProcessZeroWhereTheSecondQueryFails) {
  fake_.queryStatus = {RPC_S_OK, 1725};
  helper_.ClientProcessHandles[0] = FakeCaller::Handle(0x7777);
  EXPECT_EQ(Ask(), kName);
  EXPECT_EQ(fake_.duplicatedFrom.at(1), FakeCaller::Handle(0x7777));
}

TEST_F(CallerIdentity, DuplicatesWhateverHandleTheHostHolds) {
  fake_.process = nullptr;
  helper_.ClientProcessHandles[kClient] = GetCurrentProcess();
  EXPECT_EQ(Ask(), kName);
  EXPECT_EQ(fake_.duplicatedFrom.at(1), GetCurrentProcess());
}

// Each call failing by itself.

struct OneFailure {
  const char* label;
  void (*breakIt)(FakeCaller&);
  int opened;  // and so to be closed
  int reverted;
};

std::ostream& operator<<(std::ostream& out, const OneFailure& row) { return out << row.label; }

class CallerIdentityFailure : public testing::TestWithParam<OneFailure> {};

TEST_P(CallerIdentityFailure, NeverGivesANameAndLeavesTheThreadAndTheHandlesAsTheyWere) {
  FakeCaller fake;
  const LogCapture log;
  GetParam().breakIt(fake);
  RpcSecurityHelper helper;
  EXPECT_EQ(helper.GetPFNOfCaller(), L"");
  EXPECT_EQ(log.Records().size(), 1U);
  EXPECT_EQ(std::ssize(fake.closed), GetParam().opened);
  EXPECT_EQ(std::count(fake.order.begin(), fake.order.end(), "revert"), GetParam().reverted);
}

constexpr OneFailure kFailures[] = {
    {"FirstQuery", [](FakeCaller& fake) { fake.queryStatus[0] = 5; }, 0, 0},
    {"SecondQuery", [](FakeCaller& fake) { fake.queryStatus[1] = 5; }, 0, 0},
    {"OpenProcess", [](FakeCaller& fake) { fake.process = nullptr; }, 0, 0},
    {"Impersonate", [](FakeCaller& fake) { fake.impersonateStatus = 5; }, 1, 0},
    {"Length", [](FakeCaller& fake) { fake.lengthStatus = 5; }, 1, 1},
    {"Name", [](FakeCaller& fake) { fake.nameStatus = 5; }, 1, 1},
    {"FirstQueryBelowZero", [](FakeCaller& fake) { fake.queryStatus[0] = kNegative; }, 0, 0},
    {"SecondQueryBelowZero", [](FakeCaller& fake) { fake.queryStatus[1] = kNegative; }, 0, 0},
    {"ImpersonateBelowZero", [](FakeCaller& fake) { fake.impersonateStatus = kNegative; }, 1, 0},
    {"LengthBelowZero", [](FakeCaller& fake) { fake.lengthStatus = kNegative; }, 1, 1},
    {"NameBelowZero", [](FakeCaller& fake) { fake.nameStatus = kNegative; }, 1, 1},
};

INSTANTIATE_TEST_SUITE_P(OneByOne, CallerIdentityFailure, testing::ValuesIn(kFailures),
                         [](const auto& instance) { return instance.param.label; });

TEST_F(CallerIdentity, StandsThoughRevertingFails) {
  fake_.revertStatus = 1702;
  EXPECT_EQ(Ask(), kName);
  EXPECT_THAT(log_.Records(), IsEmpty());
}

}  // namespace
}  // namespace Zq::Gantry::Security
