#include "service/command_table.h"

#include <windows.h>

#include <time.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <objbase.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

#include "base/calendar.h"
#include "collection/open_helper.h"
#include "import_patch.h"
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

/// A field of the one helper, which all tests of a program share.
template <typename Field>
Field& Of(Field WattleafHelper::*field) {
  return WattleafHelper::Instance().*field;
}

/// Begins with the one helper as it is after its creation.
class CommandDispatcher : public testing::Test {
 protected:
  CommandDispatcher() {
    Of(&OpenHelper::PlatformSupportState) = -2;
    Of(&OpenHelper::dataAvailable) = false;
    Of(&OpenHelper::dataChanged) = true;
    Of(&OpenHelper::dailyLedger).clear();
    Of(&OpenHelper::errorsAndWarningsJson).clear();
    Of(&OpenHelper::collectionPath) = folder.Path().c_str();
  }

  const TempFolder folder;
};

[[noreturn]] __time64_t BrokenClock(__time64_t*) { throw std::runtime_error("no time"); }

/// 2024-05-08 12:00 UTC, so that no midnight falls between two questions.
__time64_t Noon(__time64_t* now) {
  constexpr __time64_t kNoon = 1'715'169'600;
  if (now != nullptr) *now = kNoon;
  return kNoon;
}

/// A callback that counts its calls and its lives.
struct Callback {
  std::shared_ptr<int> calls;
  void operator()(wchar_t*) const { ++*calls; }
};

}  // namespace

TEST_F(CommandDispatcher, Command8AnswersTrueRightAfterCreation) {
  const Answer answer = Ask(8);
  EXPECT_EQ(answer.status, 0);
  EXPECT_EQ(answer.text, L"true");
}

TEST_F(CommandDispatcher, Command10AnswersFalseBeforeCollectionHasStarted) {
  const Answer answer = Ask(10);
  EXPECT_EQ(answer.status, 0);
  EXPECT_EQ(answer.text, L"false");
}

TEST_F(CommandDispatcher, Command10FollowsItsFlag) {
  Of(&OpenHelper::dataAvailable) = true;
  EXPECT_EQ(Ask(10).text, L"true");
}

TEST_F(CommandDispatcher, Command8FollowsItsFlagAndDoesNotClearIt) {
  EXPECT_EQ(Ask(8).text, L"true");
  EXPECT_EQ(Ask(8).text, L"true");
  Of(&OpenHelper::dataChanged) = false;
  EXPECT_EQ(Ask(8).text, L"false");
}

TEST_F(CommandDispatcher, Command7AnswersEachStateInDigits) {
  for (const int state : {1, 0, -1}) {
    Of(&OpenHelper::PlatformSupportState) = state;
    EXPECT_EQ(Ask(7).status, 0);
    EXPECT_EQ(Ask(7).text, std::to_wstring(state));
  }
}

TEST_F(CommandDispatcher, Command7TakesTheComOfASingleThreadedApartmentAway) {
  const auto isSingleThreaded = [] {
    APTTYPE type = APTTYPE_NA;
    APTTYPEQUALIFIER qualifier = APTTYPEQUALIFIER_NONE;
    return SUCCEEDED(CoGetApartmentType(&type, &qualifier)) &&
           (type == APTTYPE_STA || type == APTTYPE_MAINSTA);
  };
  const LogCapture log;
  std::thread([&isSingleThreaded] {
    EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
    EXPECT_TRUE(isSingleThreaded());
    EXPECT_EQ(Ask(7).status, 0);
    EXPECT_FALSE(isSingleThreaded());
  }).join();
}

TEST_F(CommandDispatcher, NumbersOutsideOneToTenAreUnknown) {
  EXPECT_EQ(Ask(0).status, 0x20000001);
  EXPECT_EQ(Ask(11).status, 0x20000001);
  EXPECT_EQ(Ask(0xFFFFFFFF).status, 0x20000001);
}

TEST_F(CommandDispatcher, ANullInputIsNoResultAndLeavesTheOutput) {
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

TEST_F(CommandDispatcher, ANullInputComesBeforeAnUnknownNumber) {
  WattleafService service;
  wchar_t* output = nullptr;
  EXPECT_EQ(service.ExecuteCommand(nullptr, 99, nullptr, &output, {}, nullptr), 0x20000002);
}

TEST_F(CommandDispatcher, TheCallbackIsDestroyedAndNeverCalled) {
  WattleafService service;
  std::wstring input;
  wchar_t* output = nullptr;
  auto calls = std::make_shared<int>(0);
  EXPECT_EQ(service.ExecuteCommand(nullptr, 8, input.data(), &output, Callback{calls}, nullptr), 0);
  service.FreeResult(output);
  EXPECT_EQ(*calls, 0);
  EXPECT_EQ(calls.use_count(), 1);
}

TEST_F(CommandDispatcher, TheCallbackIsDestroyedAndNeverCalledWithoutAResultEither) {
  struct Row {
    const char* label;
    unsigned int command;
    const wchar_t* input;
    bool hasOutput;
    int status;
  };
  const Row rows[] = {
      {"null input", 8, nullptr, true, 0x20000002},
      {"null input to an unknown command", 99, nullptr, true, 0x20000002},
      {"unknown command", 11, L"", true, 0x20000001},
      {"no store", 2, L"?7", true, 0x20000002},
      {"no place for the result", 8, L"", false, 0x20000002},
  };
  WattleafService service;
  for (const Row& row : rows) {
    SCOPED_TRACE(row.label);
    std::wstring text = row.input != nullptr ? row.input : L"";
    wchar_t marker = L'm';
    wchar_t* output = &marker;
    auto calls = std::make_shared<int>(0);
    EXPECT_EQ(
        service.ExecuteCommand(nullptr, row.command, row.input != nullptr ? text.data() : nullptr,
                               row.hasOutput ? &output : nullptr, Callback{calls}, nullptr),
        row.status);
    EXPECT_EQ(output, &marker);
    EXPECT_EQ(*calls, 0);
    EXPECT_EQ(calls.use_count(), 1);
  }
}

TEST_F(CommandDispatcher, AResultOf65535CharactersIsHandedOverAndALongerOneIsNoResult) {
  Of(&OpenHelper::errorsAndWarningsJson) = std::wstring(65535, L'x');
  const Answer answer = Ask(9);
  EXPECT_EQ(answer.status, 0);
  EXPECT_EQ(answer.text, std::wstring(65535, L'x'));

  Of(&OpenHelper::errorsAndWarningsJson) = std::wstring(65536, L'x');
  WattleafService service;
  std::wstring input;
  wchar_t marker = L'm';
  wchar_t* output = &marker;
  EXPECT_EQ(service.ExecuteCommand(nullptr, 9, input.data(), &output, {}, nullptr), 0x20000002);
  EXPECT_EQ(output, &marker);
}

TEST_F(CommandDispatcher, ANullOutputIsNoResult) {
  WattleafService service;
  std::wstring input;
  EXPECT_EQ(service.ExecuteCommand(nullptr, 8, input.data(), nullptr, {}, nullptr), 0x20000002);
}

TEST_F(CommandDispatcher, Command1AnswersZeroForAnEmptyLedger) {
  EXPECT_EQ(Ask(1).text, L"0.000000");
  EXPECT_EQ(Ask(3).text, L"0.000000");
}

TEST_F(CommandDispatcher, Command9AnswersTheEmptyListAsASuccess) {
  const Answer answer = Ask(9);
  EXPECT_EQ(answer.status, 0);
  EXPECT_EQ(answer.text, L"[]");
}

TEST_F(CommandDispatcher, Command3MultipliesAndDividesInTheGivenOrderAndIn32Bits) {
  const ImportPatch clock("_time64", &Noon);
  struct Row {
    float averageWh;
    const wchar_t* average;
    const wchar_t* trees;
  };
  // average * 365 * 3 / 1000 / 300, each step rounded to 32 bits. For the last average, each other
  // order of the four steps, constants taken together and 64 bits give another text; for the second
  // it is 391.610325 in 64 bits.
  for (const Row& row :
       {Row{1000.0F, L"1000.000000", L"3.650000"}, Row{107290.5F, L"107290.500000", L"391.610321"},
        Row{576931.5F, L"576931.500000", L"2105.800293"}}) {
    // One entry in the seven days, exact in 32 bits.
    Of(&OpenHelper::dailyLedger)[*GetCurrentDate()] = row.averageWh * 7.0F;
    EXPECT_EQ(Ask(1).text, row.average);
    EXPECT_EQ(Ask(3).text, row.trees);
  }
}

namespace {

void* __cdecl NoMemory(std::size_t) { return nullptr; }

}  // namespace

TEST_F(CommandDispatcher, AFailedAllocationIsNoResultAndLeavesTheOutput) {
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

TEST_F(CommandDispatcher, CommandsFourToSixHandOverTheirOwnSeries) {
  EXPECT_NE(Ask(4).text.find(L"[{\"Time\":"), std::wstring::npos);
  EXPECT_NE(Ask(5).text.find(L"[{\"Day\":"), std::wstring::npos);
  EXPECT_NE(Ask(6).text.find(L"[{\"Month\":"), std::wstring::npos);
  for (const unsigned int command : {4U, 5U, 6U}) EXPECT_EQ(Ask(command).status, 0) << command;
}

TEST_F(CommandDispatcher, AnOperationThatCatchesItsOwnExceptionIsNoResultAndLeavesTheOutput) {
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

TEST_F(CommandDispatcher, SessionAndConfigurationAreNotLookedAt) {
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

TEST_F(CommandDispatcher, LogsNothing) {
  const LogCapture log;
  Of(&OpenHelper::PlatformSupportState) = 1;
  for (const unsigned int command : {0U, 1U, 2U, 3U, 7U, 8U, 9U, 10U, 11U}) Ask(command);
  EXPECT_THAT(log.Records(), IsEmpty());
}

TEST_F(CommandDispatcher, Command2HandsItsInputToTheRankingAndLeavesItAsItWas) {
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

TEST_F(CommandDispatcher, Command2TakesAnEmptyInput) {
  WriteWholeFile(folder.File(L"Powerlog.json"), "[]");
  EXPECT_EQ(Ask(2).status, 0);
  EXPECT_EQ(Ask(2).text, L"[]");
}

TEST_F(CommandDispatcher, Command2WithoutAStoreIsNoResultAndLeavesTheOutput) {
  const LogCapture log;
  WattleafService service;
  std::wstring input = L"?7";
  wchar_t marker = L'm';
  wchar_t* output = &marker;
  EXPECT_EQ(service.ExecuteCommand(nullptr, 2, input.data(), &output, {}, nullptr), 0x20000002);
  EXPECT_EQ(output, &marker);
  EXPECT_THAT(log.Records(), IsEmpty());
}

TEST_F(CommandDispatcher, ANullInputReachesNoRanking) {
  WriteWholeFile(folder.File(L"Powerlog.json"), "[]");
  WattleafService service;
  wchar_t* output = nullptr;
  EXPECT_EQ(service.ExecuteCommand(nullptr, 2, nullptr, &output, {}, nullptr), 0x20000002);
  EXPECT_EQ(output, nullptr);
}

TEST_F(CommandDispatcher, Command9AnswersAnEmptyListWhateverTheInput) {
  std::wstring input = L"C:\\Icons?7";
  WattleafService service;
  wchar_t* output = nullptr;
  EXPECT_EQ(service.ExecuteCommand(nullptr, 9, input.data(), &output, {}, nullptr), 0);
  EXPECT_STREQ(output, L"[]");
  service.FreeResult(output);
}
