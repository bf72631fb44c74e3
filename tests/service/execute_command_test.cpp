// What ExecuteCommand does for every command: status, input, output, callback.

#include <windows.h>

#include <time.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "import_patch.h"
#include "service/execute_command_fixture.h"
#include "support/log_capture.h"

using namespace TestSupport;
using namespace Zq::Gantry::Server::Services::Wattleaf;
using Standin::ImportPatch;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using ExecuteCommand = ExecuteCommandFixture;

[[noreturn]] __time64_t BrokenClock(__time64_t*) { throw std::runtime_error("no time"); }

/// A callback that counts its calls; the count is shared with its copies.
struct Callback {
  std::shared_ptr<int> calls;
  void operator()(wchar_t*) const { ++*calls; }
};

}  // namespace

TEST_F(ExecuteCommand, RejectsNumbersOutsideOneToTen) {
  EXPECT_EQ(Execute(0).status, 0x20000001);
  EXPECT_EQ(Execute(11).status, 0x20000001);
  EXPECT_EQ(Execute(0xFFFFFFFF).status, 0x20000001);
}

TEST_F(ExecuteCommand, ReturnsNoResultAndLeavesTheOutputForANullInput) {
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

TEST_F(ExecuteCommand, ChecksForANullInputBeforeTheCommandNumber) {
  WattleafService service;
  wchar_t* output = nullptr;
  EXPECT_EQ(service.ExecuteCommand(nullptr, 99, nullptr, &output, {}, nullptr), 0x20000002);
}

TEST_F(ExecuteCommand, DestroysTheCallbackWithoutCallingIt) {
  WattleafService service;
  std::wstring input;
  wchar_t* output = nullptr;
  auto calls = std::make_shared<int>(0);
  EXPECT_EQ(service.ExecuteCommand(nullptr, 8, input.data(), &output, Callback{calls}, nullptr), 0);
  service.FreeResult(output);
  EXPECT_EQ(*calls, 0);
  EXPECT_EQ(calls.use_count(), 1);
}

TEST_F(ExecuteCommand, DestroysTheCallbackWithoutCallingItOnFailure) {
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
      {"null output", 8, L"", false, 0x20000002},
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

TEST_F(ExecuteCommand, ReturnsUpTo65535Characters) {
  OfSingleton(&OpenHelper::errorsAndWarningsJson) = std::wstring(65535, L'x');
  const CommandAnswer answer = Execute(9);
  EXPECT_EQ(answer.status, 0);
  EXPECT_EQ(answer.text, std::wstring(65535, L'x'));

  OfSingleton(&OpenHelper::errorsAndWarningsJson) = std::wstring(65536, L'x');
  WattleafService service;
  std::wstring input;
  wchar_t marker = L'm';
  wchar_t* output = &marker;
  EXPECT_EQ(service.ExecuteCommand(nullptr, 9, input.data(), &output, {}, nullptr), 0x20000002);
  EXPECT_EQ(output, &marker);
}

TEST_F(ExecuteCommand, ReturnsNoResultForANullOutput) {
  WattleafService service;
  std::wstring input;
  EXPECT_EQ(service.ExecuteCommand(nullptr, 8, input.data(), nullptr, {}, nullptr), 0x20000002);
}

namespace {

void* __cdecl NoMemory(std::size_t) { return nullptr; }

}  // namespace

TEST_F(ExecuteCommand, ReturnsNoResultAndLeavesTheOutputWhenMemoryRunsOut) {
  ASSERT_EQ(Execute(8).status, 0) << "constructs the singleton, which allocates";
  WattleafService service;
  std::wstring input;
  wchar_t marker = L'm';
  wchar_t* output = &marker;
  int status = 0;
  {
    // A short result stays inside the string object, so only the output block is allocated.
    const ImportPatch patch("malloc", &NoMemory);
    status = service.ExecuteCommand(nullptr, 8, input.data(), &output, {}, nullptr);
  }
  EXPECT_EQ(status, 0x20000002);
  EXPECT_EQ(output, &marker);
}

TEST_F(ExecuteCommand, ReturnsNoResultAndLeavesTheOutputWhenASeriesFails) {
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

TEST_F(ExecuteCommand, IgnoresSessionAndConfiguration) {
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

TEST_F(ExecuteCommand, LogsNothing) {
  const LogCapture log;
  OfSingleton(&OpenHelper::PlatformSupportState) = 1;
  for (const unsigned int command : {0U, 1U, 2U, 3U, 7U, 8U, 9U, 10U, 11U}) {
    static_cast<void>(Execute(command));
  }
  EXPECT_THAT(log.Records(), IsEmpty());
}

TEST_F(ExecuteCommand, ReturnsNoResultAndLeavesTheOutputForCommand2WithoutAStore) {
  const LogCapture log;
  WattleafService service;
  std::wstring input = L"?7";
  wchar_t marker = L'm';
  wchar_t* output = &marker;
  EXPECT_EQ(service.ExecuteCommand(nullptr, 2, input.data(), &output, {}, nullptr), 0x20000002);
  EXPECT_EQ(output, &marker);
  EXPECT_THAT(log.Records(), IsEmpty());
}

TEST_F(ExecuteCommand, DoesNotRankForANullInput) {
  WriteWholeFile(folder.File(L"Powerlog.json"), "[]");
  WattleafService service;
  wchar_t* output = nullptr;
  EXPECT_EQ(service.ExecuteCommand(nullptr, 2, nullptr, &output, {}, nullptr), 0x20000002);
  EXPECT_EQ(output, nullptr);
}
