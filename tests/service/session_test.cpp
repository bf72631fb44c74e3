#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "service/wattleaf_service.h"
#include "support/log_capture.h"

using namespace TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;
using Zq::Gantry::Server::Services::Wattleaf::WattleafService;

namespace {

/// The one field of the record behind a handle.
std::wstring NameOf(void* handle) { return *static_cast<wchar_t**>(handle); }

std::wstring NameKeptFor(std::wstring name) {
  WattleafService service;
  void* handle = nullptr;
  service.StartSession(name.data(), &handle);
  const std::wstring kept = NameOf(handle);
  service.EndSession(&handle);
  return kept;
}

}  // namespace

TEST(Session, StartAndEndKeepTheNameAndLogOneLineEach) {
  const LogCapture log;
  WattleafService service;
  std::wstring name = L"client";
  void* handle = nullptr;
  EXPECT_EQ(service.StartSession(name.data(), &handle), 0);
  ASSERT_NE(handle, nullptr);
  EXPECT_EQ(NameOf(handle), L"client");
  EXPECT_NE(*static_cast<wchar_t**>(handle), name.data());
  EXPECT_EQ(service.EndSession(&handle), 0);
  EXPECT_THAT(log.Records(), ElementsAre(Info(L"WattleafService::StartSession"),
                                         Info(L"WattleafService::EndSession")));
}

TEST(Session, StartWithoutHandleOnlyLogs) {
  const LogCapture log;
  WattleafService service;
  std::wstring name = L"client";
  EXPECT_EQ(service.StartSession(name.data(), nullptr), 0);
  EXPECT_THAT(log.Records(), ElementsAre(Info(L"WattleafService::StartSession")));
}

TEST(Session, EndWithoutHandleOnlyLogs) {
  const LogCapture log;
  WattleafService service;
  EXPECT_EQ(service.EndSession(nullptr), 0);
  EXPECT_THAT(log.Records(), ElementsAre(Info(L"WattleafService::EndSession")));
}

TEST(Session, EndOfANullSessionOnlyLogs) {
  const LogCapture log;
  WattleafService service;
  void* handle = nullptr;
  EXPECT_EQ(service.EndSession(&handle), 0);
  EXPECT_THAT(log.Records(), ElementsAre(Info(L"WattleafService::EndSession")));
}

TEST(Session, EndLeavesTheDeadHandleInTheHostsVariable) {
  WattleafService service;
  std::wstring name = L"client";
  void* handle = nullptr;
  service.StartSession(name.data(), &handle);
  const void* before = handle;
  service.EndSession(&handle);
  EXPECT_EQ(handle, before);
}

TEST(Session, AnEmptyNameIsKeptAsAnEmptyText) { EXPECT_EQ(NameKeptFor(L""), L""); }

TEST(Session, ANameOf64CharactersIsCopiedWhole) {
  const std::wstring name(64, L'n');
  EXPECT_EQ(NameKeptFor(name), name);
}

TEST(Session, ANameBeyond64CharactersIsKeptAsAnEmptyText) {
  EXPECT_EQ(NameKeptFor(std::wstring(65, L'n')), L"");
}

TEST(Session, ANullNameIsKeptAsAnEmptyText) {
  WattleafService service;
  void* handle = nullptr;
  EXPECT_EQ(service.StartSession(nullptr, &handle), 0);
  EXPECT_EQ(NameOf(handle), L"");
  service.EndSession(&handle);
}

TEST(SessionChange, LogonAndUnlockOpenASession) {
  for (const unsigned long event : {5UL, 8UL}) {
    const LogCapture log;
    WattleafService().session_change_task(event, nullptr);
    EXPECT_THAT(log.Records(), ElementsAre(Info(L"Opening session\n")));
  }
}

TEST(SessionChange, LogoffAndLockCloseOne) {
  for (const unsigned long event : {6UL, 7UL}) {
    const LogCapture log;
    WattleafService().session_change_task(event, nullptr);
    EXPECT_THAT(log.Records(), ElementsAre(Info(L"Locking or closing session\n")));
  }
}

TEST(SessionChange, OtherEventsLogNothing) {
  for (const unsigned long event : {0UL, 1UL, 2UL, 3UL, 4UL, 9UL, 0xFFFFFFFFUL}) {
    const LogCapture log;
    WattleafService().session_change_task(event, nullptr);
    EXPECT_THAT(log.Records(), IsEmpty());
  }
}

TEST(EmptyTasks, PowerEventsAndControlCodesDoNothing) {
  const LogCapture log;
  WattleafService service;
  for (const unsigned long code : {0UL, 7UL, 0x80000000UL}) {
    service.power_event_task(code);
    service.control_code_task(code);
  }
  service.extra_task();
  EXPECT_THAT(log.Records(), IsEmpty());
}

TEST(EmptyTasks, TheServiceIsAlwaysReady) { EXPECT_TRUE(WattleafService().query_ready()); }

TEST(FreeResult, TakesANullPointer) { WattleafService().FreeResult(nullptr); }
