#include "service/command_table.h"

#include <windows.h>

#include <time.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "collection/open_helper.h"
#include "import_patch.h"
#include "ledger/calendar.h"
#include "service/wattleaf_service.h"
#include "support/log_capture.h"
#include "support/temp_folder.h"

using namespace TestSupport;
using namespace Zq::Gantry::Server::Services::Wattleaf;
using Standin::ImportPatch;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct Answer {
  int status = 0;
  std::wstring text;
};

Answer Ask(unsigned int command) {
  WattleafService service;
  std::wstring input;
  wchar_t* output = nullptr;
  const int status = service.ExecuteCommand(nullptr, command, input.data(), &output, {}, nullptr);
  Answer answer{status, output != nullptr ? output : L""};
  service.FreeResult(output);
  return answer;
}

/// A field of the one helper, which each test program has to itself.
template <typename Field>
Field& Of(Field WattleafHelper::*field) {
  return WattleafHelper::Instance().*field;
}

[[noreturn]] __time64_t BrokenClock(__time64_t*) { throw std::runtime_error("no time"); }

/// A callback that counts its calls and its lives.
struct Callback {
  std::shared_ptr<int> calls;
  void operator()(wchar_t*) const { ++*calls; }
};

}  // namespace

TEST(CommandDispatcher, Command8AnswersTrueRightAfterCreation) {
  const Answer answer = Ask(8);
  EXPECT_EQ(answer.status, 0);
  EXPECT_EQ(answer.text, L"true");
}

TEST(CommandDispatcher, Command10AnswersFalseBeforeCollectionHasStarted) {
  const Answer answer = Ask(10);
  EXPECT_EQ(answer.status, 0);
  EXPECT_EQ(answer.text, L"false");
}

TEST(CommandDispatcher, Command10FollowsItsFlag) {
  Of(&OpenHelper::dataAvailable) = true;
  EXPECT_EQ(Ask(10).text, L"true");
}

TEST(CommandDispatcher, Command8FollowsItsFlagAndDoesNotClearIt) {
  EXPECT_EQ(Ask(8).text, L"true");
  EXPECT_EQ(Ask(8).text, L"true");
  Of(&OpenHelper::dataChanged) = false;
  EXPECT_EQ(Ask(8).text, L"false");
}

TEST(CommandDispatcher, Command7AnswersEachStateInDigits) {
  for (const int state : {1, 0, -1}) {
    Of(&OpenHelper::PlatformSupportState) = state;
    EXPECT_EQ(Ask(7).status, 0);
    EXPECT_EQ(Ask(7).text, std::to_wstring(state));
  }
}

TEST(CommandDispatcher, NumbersOutsideOneToTenAreUnknown) {
  EXPECT_EQ(Ask(0).status, 0x20000001);
  EXPECT_EQ(Ask(11).status, 0x20000001);
  EXPECT_EQ(Ask(0xFFFFFFFF).status, 0x20000001);
}

TEST(CommandDispatcher, ANullInputIsNoResultAndLeavesTheOutput) {
  WattleafService service;
  wchar_t marker = L'm';
  wchar_t* output = &marker;
  auto calls = std::make_shared<int>(0);
  EXPECT_EQ(service.ExecuteCommand(nullptr, 8, nullptr, &output, Callback{calls}, nullptr),
            0x20000002);
  EXPECT_EQ(output, &marker);
  EXPECT_EQ(*calls, 0);
  EXPECT_EQ(calls.use_count(), 1) << "the callback is destroyed";
}

TEST(CommandDispatcher, ANullInputComesBeforeAnUnknownNumber) {
  WattleafService service;
  wchar_t* output = nullptr;
  EXPECT_EQ(service.ExecuteCommand(nullptr, 99, nullptr, &output, {}, nullptr), 0x20000002);
}

TEST(CommandDispatcher, TheCallbackIsDestroyedAndNeverCalled) {
  WattleafService service;
  std::wstring input;
  wchar_t* output = nullptr;
  auto calls = std::make_shared<int>(0);
  EXPECT_EQ(service.ExecuteCommand(nullptr, 8, input.data(), &output, Callback{calls}, nullptr), 0);
  service.FreeResult(output);
  EXPECT_EQ(*calls, 0);
  EXPECT_EQ(calls.use_count(), 1);
}

TEST(CommandDispatcher, ANullOutputIsNoResult) {
  WattleafService service;
  std::wstring input;
  EXPECT_EQ(service.ExecuteCommand(nullptr, 8, input.data(), nullptr, {}, nullptr), 0x20000002);
}

TEST(CommandDispatcher, Command1AnswersZeroForAnEmptyLedger) {
  EXPECT_EQ(Ask(1).text, L"0.000000");
  EXPECT_EQ(Ask(3).text, L"0.000000");
}

TEST(CommandDispatcher, Command9AnswersTheEmptyListAsASuccess) {
  const Answer answer = Ask(9);
  EXPECT_EQ(answer.status, 0);
  EXPECT_EQ(answer.text, L"[]");
}

TEST(CommandDispatcher, Command3MultipliesAndDividesInTheGivenOrder) {
  // One entry of 7000 Wh makes an average of 1000; 1000 * 365 * 3 / 1000 / 300 = 3.65.
  Of(&OpenHelper::dailyLedger)[*GetCurrentDate()] = 7000.0F;
  EXPECT_EQ(Ask(1).text, L"1000.000000");
  EXPECT_EQ(Ask(3).text, L"3.650000");
}

namespace {

void* __cdecl NoMemory(std::size_t) { return nullptr; }

}  // namespace

TEST(CommandDispatcher, AFailedAllocationIsNoResultAndLeavesTheOutput) {
  ASSERT_EQ(Ask(8).status, 0) << "makes the helper, which allocates";
  WattleafService service;
  std::wstring input;
  wchar_t marker = L'm';
  wchar_t* output = &marker;
  int status = 0;
  {
    // A short result stays inside the string object, so that only the hand-over allocates.
    const ImportPatch patch("malloc", &NoMemory);
    status = service.ExecuteCommand(nullptr, 8, input.data(), &output, {}, nullptr);
  }
  EXPECT_EQ(status, 0x20000002);
  EXPECT_EQ(output, &marker);
}

TEST(CommandDispatcher, CommandsFourToSixHandOverTheirOwnSeries) {
  const TempFolder folder;
  Of(&OpenHelper::collectionPath) = folder.Path().c_str();
  EXPECT_NE(Ask(4).text.find(L"[{\"Time\":"), std::wstring::npos);
  EXPECT_NE(Ask(5).text.find(L"[{\"Day\":"), std::wstring::npos);
  EXPECT_NE(Ask(6).text.find(L"[{\"Month\":"), std::wstring::npos);
  for (const unsigned int command : {4U, 5U, 6U}) EXPECT_EQ(Ask(command).status, 0) << command;
}

TEST(CommandDispatcher, AnOperationThatCatchesItsOwnExceptionIsNoResultAndLeavesTheOutput) {
  const LogCapture log;
  const ImportPatch patch("_time64", &BrokenClock);
  WattleafService service;
  std::wstring input;
  for (const unsigned int command : {4U, 5U, 6U}) {
    wchar_t marker = L'm';
    wchar_t* output = &marker;
    EXPECT_EQ(service.ExecuteCommand(nullptr, command, input.data(), &output, {}, nullptr),
              0x20000002);
    EXPECT_EQ(output, &marker);
  }
  EXPECT_THAT(log.Records(), ElementsAre(Error(L"Exception in GetDailyPowerConsumption"),
                                         Error(L"Exception in GetWeeklyPowerConsumption"),
                                         Error(L"Exception in GetMonthlyPowerConsumption")));
}

TEST(CommandDispatcher, SessionAndConfigurationAreNotLookedAt) {
  WattleafService service;
  std::wstring input;
  wchar_t* output = nullptr;
  void* const nowhere = reinterpret_cast<void*>(1);
  EXPECT_EQ(
      service.ExecuteCommand(nowhere, 10, input.data(), &output, {},
                             static_cast<Zq::Gantry::Security::RequestConfiguration*>(nowhere)),
      0);
  EXPECT_STREQ(output, L"false");
  service.FreeResult(output);
}

TEST(CommandDispatcher, LogsNothing) {
  const TempFolder folder;
  const LogCapture log;
  Of(&OpenHelper::collectionPath) = folder.Path().c_str();
  Of(&OpenHelper::PlatformSupportState) = 1;
  for (const unsigned int command : {0U, 1U, 2U, 3U, 7U, 8U, 9U, 10U, 11U}) Ask(command);
  EXPECT_THAT(log.Records(), IsEmpty());
}

TEST(CommandDispatcher, Command2HandsItsInputToTheRankingAndLeavesItAsItWas) {
  const TempFolder folder;
  Of(&OpenHelper::collectionPath) = folder.Path().c_str();
  WriteWholeFile(folder.File(L"Powerlog.json"), "[]");
  const std::wstring request = folder.File(L"icons") + L"?7";
  std::wstring input = request;
  WattleafService service;
  wchar_t* output = nullptr;
  EXPECT_EQ(service.ExecuteCommand(nullptr, 2, input.data(), &output, {}, nullptr), 0);
  EXPECT_STREQ(output, L"[]");
  service.FreeResult(output);
  EXPECT_EQ(input, request);
  EXPECT_TRUE(FileExists(folder.File(L"icons")));
}

TEST(CommandDispatcher, Command2TakesAnEmptyInput) {
  const TempFolder folder;
  Of(&OpenHelper::collectionPath) = folder.Path().c_str();
  WriteWholeFile(folder.File(L"Powerlog.json"), "[]");
  EXPECT_EQ(Ask(2).status, 0);
  EXPECT_EQ(Ask(2).text, L"[]");
}

TEST(CommandDispatcher, Command2WithoutAStoreIsNoResultAndLeavesTheOutput) {
  const TempFolder folder;
  const LogCapture log;
  Of(&OpenHelper::collectionPath) = folder.Path().c_str();
  WattleafService service;
  std::wstring input = L"?7";
  wchar_t marker = L'm';
  wchar_t* output = &marker;
  EXPECT_EQ(service.ExecuteCommand(nullptr, 2, input.data(), &output, {}, nullptr), 0x20000002);
  EXPECT_EQ(output, &marker);
  EXPECT_THAT(log.Records(), IsEmpty());
}

TEST(CommandDispatcher, ANullInputReachesNoRanking) {
  const TempFolder folder;
  Of(&OpenHelper::collectionPath) = folder.Path().c_str();
  WriteWholeFile(folder.File(L"Powerlog.json"), "[]");
  WattleafService service;
  wchar_t* output = nullptr;
  EXPECT_EQ(service.ExecuteCommand(nullptr, 2, nullptr, &output, {}, nullptr), 0x20000002);
  EXPECT_EQ(output, nullptr);
}

TEST(CommandDispatcher, Command9AnswersAnEmptyListWhateverTheInput) {
  std::wstring input = L"C:\\Icons?7";
  WattleafService service;
  wchar_t* output = nullptr;
  EXPECT_EQ(service.ExecuteCommand(nullptr, 9, input.data(), &output, {}, nullptr), 0);
  EXPECT_STREQ(output, L"[]");
  service.FreeResult(output);
}
