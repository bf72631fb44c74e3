#include <windows.h>

#include <comdef.h>
#include <gtest/gtest.h>

#include <future>
#include <string>
#include <thread>
#include <vector>

#include "collection/wattleaf_helper.h"
#include "platform/platform_calls.h"
#include "service/wattleaf_service.h"

using Zq::Gantry::Server::Services::Wattleaf::WattleafHelper;
using Zq::Gantry::Server::Services::Wattleaf::WattleafService;
using namespace Standin::Firmware;

namespace {

class Helper : public WattleafHelper {
 public:
  using WattleafHelper::PlatformSupportState;
};

class IsPlatformSupported : public TestSupport::WmiTest {
 protected:
  int Decide(const std::string& words) {
    Simulate(words);
    Helper fresh;
    const int state = fresh.IsPlatformSupported();
    EXPECT_EQ(fresh.PlatformSupportState, state);
    return state;
  }

  Helper helper;
};

}  // namespace

TEST_F(IsPlatformSupported, StartsUndecided) { EXPECT_EQ(helper.PlatformSupportState, -2); }

TEST_F(IsPlatformSupported, ReturnsSupportedForFlagAndMarker) {
  EXPECT_EQ(Decide(""), 1);
  EXPECT_TRUE(log.Records().empty());
}

TEST_F(IsPlatformSupported, AcceptsTextAfterTheMarker) { EXPECT_EQ(Decide("marker-goes-on"), 1); }

TEST_F(IsPlatformSupported, ReturnsUnsupportedForAClearFlagWithoutReadingTheStrings) {
  EXPECT_EQ(Decide("flag-clear"), 0);
  EXPECT_EQ(firmware.script().Count("ConnectServer(ROOT\\CIMV2)"), 0);
}

TEST_F(IsPlatformSupported, RequiresAFirmwareUpdateWithoutTheMarker) {
  EXPECT_EQ(Decide("no-marker"), -1);
  EXPECT_EQ(Decide("marker-lower-case"), -1);
  EXPECT_TRUE(log.Records().empty());
}

TEST_F(IsPlatformSupported, RequiresAFirmwareUpdateWhenTheQueryFails) {
  EXPECT_EQ(Decide("no-system-namespace"), -1);
  EXPECT_EQ(log.Records().size(), 1U);
}

TEST_F(IsPlatformSupported, ReturnsUnsupportedForAReadBackOfSixWithoutReadingTheFlag) {
  EXPECT_EQ(Decide("reads-six"), 0);
  EXPECT_EQ(firmware.machine().Received().size(), 2U);
}

TEST_F(IsPlatformSupported, ReturnsUnsupportedWhenTheFirmwareIsUnreachable) {
  EXPECT_EQ(Decide("no-firmware-namespace"), 0);
  EXPECT_EQ(Decide("no-class"), 0);
  EXPECT_EQ(Decide("drops-write"), 0);
}

TEST_F(IsPlatformSupported, DoesNotProbeTwice) {
  for (const char* words : {"flag-clear", "no-marker", ""}) {
    Simulate(words);
    Helper fresh;
    const int first = fresh.IsPlatformSupported();
    const auto calls = firmware.script().Trace();
    EXPECT_EQ(fresh.IsPlatformSupported(), first) << words;
    EXPECT_EQ(firmware.script().Trace(), calls) << words;
  }
}

TEST_F(IsPlatformSupported, DoesNotProbeAStateSetByTheCollector) {
  for (const int verdict : {1, 0, -1}) {
    helper.PlatformSupportState = verdict;
    EXPECT_EQ(helper.IsPlatformSupported(), verdict);
  }
  EXPECT_TRUE(firmware.script().Trace().empty());
}

TEST_F(IsPlatformSupported, DoesNotOverwriteAVerdictSetDuringTheProbe) {
  for (const int verdict : {0, -1}) {
    Simulate("");
    Helper fresh;
    firmware.script().During("ExecQuery", [&] { fresh.PlatformSupportState = verdict; });
    EXPECT_EQ(fresh.IsPlatformSupported(), verdict);
    EXPECT_EQ(fresh.PlatformSupportState, verdict);
  }
}

TEST_F(IsPlatformSupported, StoresTheStateOnlyAfterBothProbes) {
  Simulate("no-marker");
  int seen = 99;
  firmware.script().During("ExecQuery", [&] { seen = helper.PlatformSupportState; });
  EXPECT_EQ(helper.IsPlatformSupported(), -1);
  EXPECT_EQ(seen, -2);
}

TEST_F(IsPlatformSupported, ThrowsOnLackOfMemoryAndStaysUndecided) {
  ledger.refusedText = L"WQL";
  EXPECT_THROW(static_cast<void>(helper.IsPlatformSupported()), _com_error);
  ledger.refusedText.clear();
  EXPECT_EQ(helper.PlatformSupportState, -2);
  EXPECT_EQ(helper.IsPlatformSupported(), 1);
}

TEST_F(IsPlatformSupported, ReturnsTheSameStateOnTwoThreads) {
  std::promise<void> start;
  const std::shared_future<void> started = start.get_future().share();
  int states[2] = {99, 99};
  std::thread threads[2];
  for (int i = 0; i < 2; ++i) {
    threads[i] = std::thread([this, i, started, &states] {
      started.wait();
      states[i] = helper.IsPlatformSupported();
    });
  }
  start.set_value();
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(states[0], 1);
  EXPECT_EQ(states[1], 1);
  EXPECT_EQ(helper.PlatformSupportState, 1);
  EXPECT_TRUE(log.Records().empty());
}

TEST_F(IsPlatformSupported, LetsConcurrentProbesBothRun) {
  // The second thread calls while the first one is in its first probe.
  std::thread second;
  int other = 99;
  bool begun = false;
  firmware.script().During("GetObject(zqqBIntM)", [&] {
    if (begun) return;
    begun = true;
    second = std::thread([&] { other = helper.IsPlatformSupported(); });
    second.join();
  });
  EXPECT_EQ(helper.IsPlatformSupported(), 1);
  EXPECT_EQ(other, 1);
  EXPECT_EQ(firmware.script().Count("ConnectServer(\\\\.\\root\\wmi)"), 2);
}

TEST_F(IsPlatformSupported, AnswersCommand7WithZeroForAClearFlagAndProbesOnce) {
  Simulate("flag-clear");
  WattleafHelper::Instance().*(&Helper::PlatformSupportState) = -2;
  WattleafService service;
  std::vector<std::string> firstCalls;
  for (int i = 0; i < 2; ++i) {
    wchar_t input[] = L"";
    wchar_t* output = nullptr;
    EXPECT_EQ(service.ExecuteCommand(nullptr, 7, input, &output, {}, nullptr), 0);
    EXPECT_STREQ(output, L"0");
    service.FreeResult(output);
    if (i == 0) firstCalls = firmware.script().Trace();
  }
  EXPECT_FALSE(firstCalls.empty());
  EXPECT_EQ(firmware.script().Trace(), firstCalls);
}
