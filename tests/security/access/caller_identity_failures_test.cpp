#include "security/access/rpc_security_helper.h"

#include <windows.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <iterator>
#include <new>
#include <ostream>
#include <stdexcept>
#include <system_error>

#include "security/access/caller_identity_fixture.h"

// Failures in the order of the steps, then each call failing alone.
namespace Zq::Gantry::Security {
namespace {

using testing::ElementsAre;
using namespace TestSupport;

TEST_F(GetPFNOfCaller, IsEmptyWhenTheClientCannotBeQueried) {
  fake_.queryStatus = {1725, 1725};
  EXPECT_EQ(CallerName(), L"");
  ExpectFailure(L"RpcServerInqCallAttributes failed", L"1725");
  EXPECT_THAT(fake_.order, ElementsAre("query"));
}

TEST_F(GetPFNOfCaller, IsEmptyWhenTheProcessCannotBeOpened) {
  fake_.process = nullptr;
  EXPECT_EQ(CallerName(), L"");
  ExpectFailure(L"OpenProcess yielded null or invalid handle", L"5");
  EXPECT_THAT(fake_.order, ElementsAre("query", "query", "open"));
}

TEST_F(GetPFNOfCaller, TreatsTheInvalidHandleAsAFailure) {
  fake_.process = INVALID_HANDLE_VALUE;
  EXPECT_EQ(CallerName(), L"");
  ExpectFailure(L"OpenProcess yielded null or invalid handle", L"5");
  EXPECT_THAT(fake_.order, ElementsAre("query", "query", "open")) << "there is no handle to close";
}

TEST_F(GetPFNOfCaller, IsEmptyAndDoesNotRevertWhenImpersonationFails) {
  fake_.impersonateStatus = 1348;
  EXPECT_EQ(CallerName(), L"");
  ExpectFailure(L"Failed to impersonate client", L"1348");
  EXPECT_THAT(fake_.order, ElementsAre("query", "query", "open", "impersonate", "close 1111"));
}

TEST_F(GetPFNOfCaller, IsEmptyForAClientOutsideAPackage) {
  fake_.lengthStatus = 15700;
  EXPECT_EQ(CallerName(), L"");
  ExpectFailure(L"GetPackageFamilyName failed", L"15700");
  EXPECT_THAT(fake_.order, ElementsAre("query", "query", "open", "impersonate", "length of 1111",
                                       "close 1111", "revert"));
}

TEST_F(GetPFNOfCaller, TreatsNoOtherStatusAsASmallBuffer) {
  // Close to 122 in number (121, 123) or in meaning (24, 111, 234).
  for (const LONG status : {LONG{1}, LONG{24}, LONG{111}, LONG{121}, LONG{123}, LONG{234}}) {
    fake_.lengthStatus = status;
    fake_.ClearRecords();
    log_.Clear();
    EXPECT_EQ(CallerName(), L"");
    ExpectFailure(L"GetPackageFamilyName failed", std::to_wstring(status));
    EXPECT_EQ(fake_.lengths.size(), 1U) << status;
  }
}

TEST_F(GetPFNOfCaller, LogsANegativeStatusWithItsSign) {
  fake_.lengthStatus = kNegative;
  EXPECT_EQ(CallerName(), L"");
  ExpectFailure(L"GetPackageFamilyName failed", L"-2147024891");
}

TEST_F(GetPFNOfCaller, LogsTheTextOfTheGenericCategory) {
  fake_.process = nullptr;
  CallerName();
  const std::string words =
      std::system_error(5, std::generic_category(), "OpenProcess yielded null or invalid handle")
          .what();
  EXPECT_THAT(log_.Records(),
              ElementsAre(Error(L"RpcSecurityHelper::GetPFNOfCaller - " +
                                std::wstring(words.begin(), words.end()) + L", Status: 5")));
}

TEST_F(GetPFNOfCaller, LogsErrorFiveWhenTheNameCannotBeReadAfterItsLength) {
  for (const LONG status : {LONG{122}, LONG{15700}, LONG{6}}) {
    fake_.nameStatus = status;
    fake_.ClearRecords();
    log_.Clear();
    EXPECT_EQ(CallerName(), L"");
    EXPECT_THAT(log_.Records(),
                ElementsAre(Error(L"RpcSecurityHelper::GetPFNOfCaller - Caught error 5")));
    EXPECT_THAT(fake_.order, ElementsAre("query", "query", "open", "impersonate", "length of 1111",
                                         "name of 1111", "close 1111", "revert"));
  }
}

TEST_F(GetPFNOfCaller, LogsAFailureBeforeItClosesAndReverts) {
  static LogCapture* log = nullptr;
  static std::vector<std::size_t> linesAtClose;
  log = &log_;
  const Standin::ImportPatch close(
      "CloseHandle", +[](HANDLE) -> BOOL {
        linesAtClose.push_back(log->Records().size());
        return TRUE;
      });
  fake_.lengthStatus = 15700;
  CallerName();
  EXPECT_THAT(linesAtClose, ElementsAre(1U));
}

TEST_F(GetPFNOfCaller, ClosesAndRevertsAfterAnyException) {
  const std::vector<void (*)()> throwers = {
      [] { throw std::bad_alloc(); },
      [] { throw std::runtime_error("anything"); },
      [] { throw "no exception object"; },
  };
  for (void (*thrower)() : throwers) {
    fake_.duringFirstNameQuery = thrower;
    fake_.ClearRecords();
    log_.Clear();
    EXPECT_EQ(CallerName(), L"");
    EXPECT_THAT(
        log_.Records(),
        ElementsAre(Error(L"RpcSecurityHelper::GetPFNOfCaller - Unknown exception, Status: 8")));
    EXPECT_THAT(fake_.order, ElementsAre("query", "query", "open", "impersonate", "length of 1111",
                                         "close 1111", "revert"));
  }
}

struct OneFailure {
  const char* label;
  void (*breakIt)(FakeCaller&);
  int closed;
  int reverted;
};

std::ostream& operator<<(std::ostream& out, const OneFailure& row) { return out << row.label; }

class GetPFNOfCallerFailure : public testing::TestWithParam<OneFailure> {};

TEST_P(GetPFNOfCallerFailure, LeavesThreadAndHandlesUnchangedAndTheNameEmpty) {
  FakeCaller fake;
  const LogCapture log;
  GetParam().breakIt(fake);
  RpcSecurityHelper helper;
  EXPECT_EQ(helper.GetPFNOfCaller(), L"");
  EXPECT_EQ(log.Records().size(), 1U);
  EXPECT_EQ(std::ssize(fake.closed), GetParam().closed);
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

INSTANTIATE_TEST_SUITE_P(OneByOne, GetPFNOfCallerFailure, testing::ValuesIn(kFailures),
                         [](const auto& instance) { return instance.param.label; });

}  // namespace
}  // namespace Zq::Gantry::Security
