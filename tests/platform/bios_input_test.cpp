#include <gtest/gtest.h>

#include <array>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/platform_calls.h"
#include "platform/win32/com_owners.h"
#include "platform/wmi/zq_bios_wmi.h"

using namespace Zq::Gantry::Server::Shared::WMI;
using namespace Standin::Firmware;
using TestSupport::LogRecord;
using TestSupport::Result;
using Zq::Gantry::Platform::UniqueSafeArray;

namespace {

constexpr std::array<std::uint8_t, 2> kItem{0x0A, 0x01};

class ZQBiosWmiInput : public TestSupport::WmiTest {
 protected:
  HRESULT Run(std::uint32_t inputSize, std::uint32_t outputSize) {
    return bios.ExecuteCommand(1, inputSize, kItem.data(), outputSize, output.data(), &returnCode);
  }
  void TearDown() override {
    bios.CloseBiosConnection();
    WmiTest::TearDown();
  }

  ZQBiosWmi bios;
  std::array<std::uint8_t, 128> output{};
  std::uint32_t returnCode = 0xEEEEEEEE;
};

LogRecord CreateWarning(const std::wstring& call, const std::wstring& result) {
  return TestSupport::Warning(
      L"class Zq::Gantry::Server::Shared::WMI::ZQBiosWmi.CreateSafeArray - failed on function " +
          call + L" with HRESULT " + result,
      L"WattleafService");
}

}  // namespace

TEST_F(ZQBiosWmiInput, IsSentByExactlyTheExpectedCalls) {
  EXPECT_EQ(Run(2, 128), S_OK);
  const std::vector<std::string> calls = {
      "CreateInstance",
      "ConnectServer(\\\\.\\root\\wmi)",
      "SetBlanket 10,0,3,3,0",
      "GetObject(zqqBIntM) 0",
      "GetMethod zqqBIOSInt128 0",
      "GetObject(zqqBDataIn) 0",
      "SpawnInstance(zqqBDataIn) 0",
      "Put(Sign) 8209 53454355 0 0",
      "Put(Command) 3 1 0 0",
      "Put(CommandType) 3 69 0 0",
      "Put(Size) 3 2 0 0",
      "Put(zqqBData) 8209 0A01 0 0",
      "SpawnInstance(__PARAMETERS) 0",
      "Put(InData) 13 0 0",
      "CreateInstanceEnum ZqqBIntM 48",
      "Next(ZqqBIntM) 2000 1",
      "Get(__PATH) 0",
      "ExecMethod \\\\NOTEBOOK\\root\\wmi:ZqqBIntM.InstanceName=\"ACPI\\\\PNP0C14\\\\ZQ_0\"|"
      "zqqBIOSInt128 0",
      "Get(OutData) 0",
      "QueryInterface(OutData)",
      "Get(rwReturnCode) 0",
      "Get(Data) 0",
  };
  EXPECT_EQ(firmware.script().Trace(), calls);
  EXPECT_TRUE(log.Records().empty());
}

TEST_F(ZQBiosWmiInput, ReachesTheFirmwareUnchanged) {
  EXPECT_EQ(Run(2, 128), S_OK);
  const auto received = firmware.machine().Received();
  ASSERT_EQ(received.size(), 1U);
  EXPECT_EQ(received[0].sign, "SECU");
  EXPECT_EQ(received[0].command, 1);
  EXPECT_EQ(received[0].commandType, 0x45);
  EXPECT_EQ(received[0].size, 2);
  EXPECT_EQ(received[0].data, (std::vector<std::uint8_t>{0x0A, 0x01}));
  EXPECT_EQ(returnCode, 0U);
}

TEST_F(ZQBiosWmiInput, IsANullArrayForSizeZero) {
  EXPECT_EQ(Run(0, 128), S_OK);
  const auto received = firmware.machine().Received();
  ASSERT_EQ(received.size(), 1U);
  EXPECT_EQ(received[0].size, 0);
  EXPECT_TRUE(received[0].nullData);
}

TEST_F(ZQBiosWmiInput, UsesMethodZeroAndReadsNothingWithoutOutput) {
  EXPECT_EQ(Run(2, 0), S_OK);
  EXPECT_EQ(firmware.machine().Received().at(0).method, "zqqBIOSInt0");
  EXPECT_EQ(firmware.script().Count("Get(rwReturnCode)"), 1);
  EXPECT_EQ(firmware.script().Count("Get(Data)"), 0);
}

TEST_F(ZQBiosWmiInput, ReleasesEachObjectAfterItsLastUse) {
  const std::vector<std::pair<const char*, int>> expected = {
      {"GetMethod", 2},              // service, class
      {"GetObject(zqqBDataIn)", 2},  // service, signature
      {"Put(Sign)", 3},              // service, signature, block
      {"CreateInstanceEnum", 3},     // service, and the block in the method's instance
      {"Get(__PATH)", 4},            // also the target; its enumerator is released
      {"ExecMethod", 3},
  };
  std::map<std::string, int> seen;
  for (const auto& [call, count] : expected) {
    firmware.script().During(call, [&seen, name = call] { seen[name] = LiveObjects(); });
  }
  EXPECT_EQ(Run(2, 128), S_OK);
  for (const auto& [call, count] : expected) EXPECT_EQ(seen[call], count) << call;
}

TEST_F(ZQBiosWmiInput, FreesAllStringsAndArrays) {
  EXPECT_EQ(Run(2, 128), S_OK);
  EXPECT_EQ(ledger.Outstanding(), 0U);
}

TEST_F(ZQBiosWmiInput, EndsTheCommandWithOneWarningWhenAnArrayCannotBeCreated) {
  for (const int vector : {1, 2}) {
    ledger.vectorCalls = 0;
    ledger.refusedVector = vector;
    log.Clear();
    EXPECT_EQ(Run(2, 128), E_FAIL) << vector;
    EXPECT_EQ(log.Records(),
              std::vector<LogRecord>{CreateWarning(L"SafeArrayCreateVector()", L"0x80004005")});
    EXPECT_EQ(ledger.Outstanding(), 0U);
  }
}

TEST_F(ZQBiosWmiInput, EndsTheCommandWithOneWarningWhenAByteCannotBeStored) {
  ledger.putElementResult = Result(0x8007000E);
  EXPECT_EQ(Run(2, 128), Result(0x8007000E));
  EXPECT_EQ(log.Records(),
            std::vector<LogRecord>{CreateWarning(L"SafeArrayPutElement()", L"0x8007000e")});
  EXPECT_EQ(ledger.Outstanding(), 0U);
}

TEST_F(ZQBiosWmiInput, CreatesAnEmptyArrayForNoBytes) {
  UniqueSafeArray array;
  EXPECT_EQ(bios.CreateSafeArray(array.out(), nullptr, 0), S_OK);
  ASSERT_TRUE(array);
  EXPECT_EQ(array.get()->rgsabound[0].cElements, 0U);
}
