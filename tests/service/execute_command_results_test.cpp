// The result of each command.

#include <windows.h>

#include <time.h>

#include <gtest/gtest.h>
#include <objbase.h>

#include <string>
#include <thread>

#include "base/calendar.h"
#include "import_patch.h"
#include "service/execute_command_fixture.h"
#include "support/log_capture.h"

using namespace TestSupport;
using namespace Zq::Gantry::Server::Services::Wattleaf;
using Standin::ImportPatch;

namespace {

using ExecuteCommand = ExecuteCommandFixture;

/// 2024-05-08 12:00 UTC, so that no midnight falls between two commands.
__time64_t Noon(__time64_t* now) {
  constexpr __time64_t kNoon = 1'715'169'600;
  if (now != nullptr) *now = kNoon;
  return kNoon;
}

}  // namespace

TEST_F(ExecuteCommand, ReturnsTrueForCommand8AfterConstruction) {
  const CommandAnswer answer = Execute(8);
  EXPECT_EQ(answer.status, 0);
  EXPECT_EQ(answer.text, L"true");
}

TEST_F(ExecuteCommand, ReturnsFalseForCommand10BeforeCollectionStarts) {
  const CommandAnswer answer = Execute(10);
  EXPECT_EQ(answer.status, 0);
  EXPECT_EQ(answer.text, L"false");
}

TEST_F(ExecuteCommand, ReturnsDataAvailableForCommand10) {
  OfSingleton(&OpenHelper::dataAvailable) = true;
  EXPECT_EQ(Execute(10).text, L"true");
}

TEST_F(ExecuteCommand, ReturnsDataChangedForCommand8WithoutClearingIt) {
  EXPECT_EQ(Execute(8).text, L"true");
  EXPECT_EQ(Execute(8).text, L"true");
  OfSingleton(&OpenHelper::dataChanged) = false;
  EXPECT_EQ(Execute(8).text, L"false");
}

TEST_F(ExecuteCommand, ReturnsTheSupportStateInDigitsForCommand7) {
  for (const int state : {1, 0, -1}) {
    OfSingleton(&OpenHelper::PlatformSupportState) = state;
    EXPECT_EQ(Execute(7).status, 0);
    EXPECT_EQ(Execute(7).text, std::to_wstring(state));
  }
}

TEST_F(ExecuteCommand, LeavesTheCallersSingleThreadedApartmentForCommand7) {
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
    EXPECT_EQ(Execute(7).status, 0);
    EXPECT_FALSE(isSingleThreaded());
  }).join();
}

TEST_F(ExecuteCommand, ReturnsZeroForCommands1And3OnAnEmptyLedger) {
  EXPECT_EQ(Execute(1).text, L"0.000000");
  EXPECT_EQ(Execute(3).text, L"0.000000");
}

TEST_F(ExecuteCommand, MultipliesAndDividesForCommand3InOrderAndIn32Bits) {
  const ImportPatch clock("_time64", &Noon);
  struct Row {
    float averageWh;
    const wchar_t* average;
    const wchar_t* trees;
  };
  // average * 365 * 3 / 1000 / 300, each step rounded to 32 bits. The last row fails for any other
  // order of the four steps, for combined constants and for 64 bits; in 64 bits the second row
  // would be 391.610325.
  for (const Row& row :
       {Row{1000.0F, L"1000.000000", L"3.650000"}, Row{107290.5F, L"107290.500000", L"391.610321"},
        Row{576931.5F, L"576931.500000", L"2105.800293"}}) {
    // One entry within the seven days, exact in 32 bits.
    OfSingleton(&OpenHelper::dailyLedger)[*GetCurrentDate()] = row.averageWh * 7.0F;
    EXPECT_EQ(Execute(1).text, row.average);
    EXPECT_EQ(Execute(3).text, row.trees);
  }
}

TEST_F(ExecuteCommand, ReturnsADifferentSeriesForEachOfCommands4To6) {
  EXPECT_NE(Execute(4).text.find(L"[{\"Time\":"), std::wstring::npos);
  EXPECT_NE(Execute(5).text.find(L"[{\"Day\":"), std::wstring::npos);
  EXPECT_NE(Execute(6).text.find(L"[{\"Month\":"), std::wstring::npos);
  for (const unsigned int command : {4U, 5U, 6U}) EXPECT_EQ(Execute(command).status, 0) << command;
}

TEST_F(ExecuteCommand, PassesTheInputOfCommand2ToTheRankingUnchanged) {
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

TEST_F(ExecuteCommand, AcceptsAnEmptyInputForCommand2) {
  WriteWholeFile(folder.File(L"Powerlog.json"), "[]");
  EXPECT_EQ(Execute(2).status, 0);
  EXPECT_EQ(Execute(2).text, L"[]");
}

TEST_F(ExecuteCommand, ReturnsTheEmptyListAsASuccessForCommand9) {
  const CommandAnswer answer = Execute(9);
  EXPECT_EQ(answer.status, 0);
  EXPECT_EQ(answer.text, L"[]");
}

TEST_F(ExecuteCommand, IgnoresTheInputOfCommand9) {
  std::wstring input = L"C:\\Icons?7";
  WattleafService service;
  wchar_t* output = nullptr;
  EXPECT_EQ(service.ExecuteCommand(nullptr, 9, input.data(), &output, {}, nullptr), 0);
  EXPECT_STREQ(output, L"[]");
  service.FreeResult(output);
}
