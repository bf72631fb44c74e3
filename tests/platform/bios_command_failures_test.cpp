#include <gtest/gtest.h>

#include <array>
#include <ostream>

#include "platform/platform_calls.h"
#include "platform/wmi/zq_bios_wmi.h"

using namespace Zq::Gantry::Server::Shared::WMI;
using namespace Standin::Firmware;
using TestSupport::FakeCom;
using TestSupport::LogRecord;
using TestSupport::Result;

namespace {

struct Step {
  const char* label;
  const char* call;
  const wchar_t* functionAndCall;
};

/// Prints the call, so that the names of the tests contain no raw bytes.
void PrintTo(const Step& step, std::ostream* out) { *out << step.call; }

constexpr Step kSteps[] = {
    {"MethodClass", "GetObject(zqqBIntM)",
     L"ExecuteCommand - failed on function IWbemServices->GetObject(InputDataBlock)"},
    {"Method", "GetMethod",
     L"ExecuteCommand - failed on function IWbemClassObject->GetMethod(BiosWmiMethod)"},
    {"InputClass", "GetObject(zqqBDataIn)",
     L"SetupInputDataBlock - failed on function IWbemServices->GetObject(InputDataBlock)"},
    {"InputInstance", "SpawnInstance(zqqBDataIn)",
     L"SetupInputDataBlock - failed on function "
     L"IWbemClassObject->SpawnInstance(InputDataBlockInstance)"},
    {"Sign", "Put(Sign)",
     L"SetupInputDataBlock - failed on function InputDataBlockInstance->Put(Sign)"},
    {"Command", "Put(Command)",
     L"SetupInputDataBlock - failed on function InputDataBlockInstance->Put(Command)"},
    {"CommandType", "Put(CommandType)",
     L"SetupInputDataBlock - failed on function InputDataBlockInstance->Put(CommandType)"},
    {"Size", "Put(Size)",
     L"SetupInputDataBlock - failed on function InputDataBlockInstance->Put(Size)"},
    {"InputData", "Put(zqqBData)",
     L"SetupInputDataBlock - failed on function InputDataBlockInstance->Put(inputData)"},
    {"MethodInstance", "SpawnInstance(__PARAMETERS)",
     L"SetupInputDataBlock - failed on function "
     L"IWbemClassObject->SpawnInstance(BiosMethodInstance)"},
    {"EmbeddedBlock", "Put(InData)",
     L"SetupInputDataBlock - failed on function BiosMethodInstance->Put(InputDataBlockClass)"},
    {"Instances", "CreateInstanceEnum",
     L"GetBiosMethodObjectPath - failed on function "
     L"IWbemServices->CreateInstanceEnum(BiosWmiMethod)"},
    {"NextInstance", "Next(ZqqBIntM)",
     L"GetBiosMethodObjectPath - failed on function IEnumWbemClassObject->Next()"},
    {"Path", "Get(__PATH)",
     L"GetBiosMethodObjectPath - failed on function IWbemClassObject->Get(path)"},
    {"MethodCall", "ExecMethod",
     L"ExecuteCommand - failed on function IWbemServices->ExecMethod(BIOS method)"},
    {"OutputBlock", "Get(OutData)",
     L"GetOutputData - failed on function OutputDataBlockInstance->Get(OutputDataBlock)"},
    {"OutputObject", "QueryInterface(OutData)",
     L"GetOutputData - failed on function OutputDataBlock->QueryInterface(OutputDataObject)"},
    {"ReturnCode", "Get(rwReturnCode)",
     L"GetOutputData - failed on function OutputDataObject->Get(ReturnCode)"},
    {"OutputData", "Get(Data)",
     L"GetOutputData - failed on function OutputDataObject->Get(outputData)"},
};

LogRecord Warning(const std::wstring& functionAndCall, const std::wstring& result) {
  return TestSupport::Warning(L"class Zq::Gantry::Server::Shared::WMI::ZQBiosWmi." +
                                  functionAndCall + L" with HRESULT " + result,
                              L"WattleafService");
}

class ZQBiosWmiCommand : public TestSupport::WmiTest {
 protected:
  HRESULT Run() {
    const std::array<std::uint8_t, 2> item{0x0A, 0x01};
    output.fill(0xEE);
    return bios.ExecuteCommand(1, 2, item.data(), 128, output.data(), &returnCode);
  }
  void TearDown() override {
    bios.CloseBiosConnection();
    WmiTest::TearDown();
    for (const std::uint8_t byte : output) EXPECT_EQ(byte, 0xEE);
  }

  ZQBiosWmi bios;
  std::array<std::uint8_t, 128> output{};
  std::uint32_t returnCode = 0;
};

using ZQBiosWmiAllocation = TestSupport::WmiTest;

class ZQBiosWmiFailedStep : public ZQBiosWmiCommand, public testing::WithParamInterface<Step> {};
class ZQBiosWmiStepWithoutObject : public ZQBiosWmiCommand,
                                   public testing::WithParamInterface<Step> {};

std::string Label(const testing::TestParamInfo<Step>& info) { return info.param.label; }

/// The steps that return an object, in the order of kSteps.
std::vector<Step> StepsWithObject() {
  std::vector<Step> steps;
  for (const Step& step : kSteps) {
    const std::string call = step.call;
    const bool returnsObject =
        call.rfind("Put", 0) != 0 && call.rfind("Get(", 0) != 0 && call != "Next(ZqqBIntM)";
    if (returnsObject) steps.push_back(step);
  }
  return steps;
}

}  // namespace

TEST_P(ZQBiosWmiFailedStep, EndsTheCommandWithItsResultAndOneWarning) {
  firmware.script().Fail(GetParam().call, Result(0x80041001));
  EXPECT_EQ(Run(), Result(0x80041001));
  EXPECT_EQ(log.Records(),
            std::vector<LogRecord>{Warning(GetParam().functionAndCall, L"0x80041001")});
  EXPECT_EQ(firmware.script().Trace().back().rfind(GetParam().call, 0), 0U)
      << "nothing is called after the step that failed";
  TestSupport::ExpectOnlyReleasesAfter(TestSupport::LogLine(log.Records().back()), record);
  EXPECT_EQ(LiveObjects(), 1) << "only the service is kept";
  EXPECT_EQ(ledger.Outstanding(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Each, ZQBiosWmiFailedStep, testing::ValuesIn(kSteps), Label);

TEST_P(ZQBiosWmiStepWithoutObject, FailsTheCommandDespiteASuccessCode) {
  firmware.script().Fail(GetParam().call, S_OK);
  EXPECT_EQ(Run(), E_FAIL);
  EXPECT_EQ(log.Records(),
            std::vector<LogRecord>{Warning(GetParam().functionAndCall, L"0x80004005")});
  EXPECT_EQ(LiveObjects(), 1);
  EXPECT_EQ(ledger.Outstanding(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Each, ZQBiosWmiStepWithoutObject, testing::ValuesIn(StepsWithObject()),
                         Label);

TEST_F(ZQBiosWmiCommand, FailsWhenOutDataHoldsNoObject) {
  Simulate("outdata-null");
  EXPECT_EQ(Run(), E_FAIL);
  EXPECT_TRUE(firmware.script().Reset("").empty());
  firmware.script().Answer("Get(OutData)", [](VARIANT* value) {
    value->vt = VT_UNKNOWN;
    value->punkVal = nullptr;
  });
  EXPECT_EQ(Run(), E_FAIL);
  const LogRecord warning =
      Warning(L"GetOutputData - failed on function OutputDataBlockInstance->Get(OutputDataBlock)",
              L"0x80004005");
  EXPECT_EQ(log.Records(), (std::vector<LogRecord>{warning, warning}));
}

TEST_F(ZQBiosWmiCommand, FailsWhenOutDataHasAnotherType) {
  firmware.script().Answer("Get(OutData)", [](VARIANT* value) {
    value->vt = VT_I8;
    value->llVal = 0x4141414141414141;
  });
  EXPECT_EQ(Run(), E_FAIL);
  EXPECT_EQ(log.Records().size(), 1U);
}

TEST_F(ZQBiosWmiCommand, LogsAMissingInstanceAndContinuesWithAnEmptyPath) {
  Simulate("no-instance");
  EXPECT_EQ(Run(), Result(0x80041008));
  const std::vector<LogRecord> warnings = {
      Warning(L"GetBiosMethodObjectPath - failed on function IEnumWbemClassObject->Next()", L"0x1"),
      Warning(L"ExecuteCommand - failed on function IWbemServices->ExecMethod(BIOS method)",
              L"0x80041008"),
  };
  EXPECT_EQ(log.Records(), warnings);
  EXPECT_EQ(firmware.script().Count("Get(__PATH)"), 0);
  EXPECT_EQ(firmware.script().Trace().back(), "ExecMethod |zqqBIOSInt128 0");
}

TEST_F(ZQBiosWmiCommand, LogsAnInstanceThatTimesOutAndContinues) {
  Simulate("slow-instance");
  EXPECT_EQ(Run(), Result(0x80041008));
  ASSERT_EQ(log.Records().size(), 2U);
  EXPECT_EQ(log.Records()[0],
            Warning(L"GetBiosMethodObjectPath - failed on function IEnumWbemClassObject->Next()",
                    L"0x40004"));
}

TEST_F(ZQBiosWmiCommand, LogsANullInstanceAndContinues) {
  firmware.script().Fail("Next(ZqqBIntM)", S_OK);
  EXPECT_EQ(Run(), Result(0x80041008));
  ASSERT_EQ(log.Records().size(), 2U);
  EXPECT_EQ(log.Records()[0],
            Warning(L"GetBiosMethodObjectPath - failed on function IEnumWbemClassObject->Next()",
                    L"0x0"));
  EXPECT_EQ(firmware.script().Trace().back(), "ExecMethod |zqqBIOSInt128 0");
}

TEST_F(ZQBiosWmiCommand, UsesAnEmptyPathWhenThePathIsNotAString) {
  firmware.script().Answer("Get(__PATH)", [](VARIANT* value) {
    value->vt = VT_I8;
    value->llVal = 0x4141414141414141;
  });
  EXPECT_EQ(Run(), Result(0x80041008));
  EXPECT_EQ(log.Records().size(), 1U);
}

TEST_F(ZQBiosWmiAllocation, ThrowsWhenAStringCannotBeAllocated) {
  for (const wchar_t* text :
       {L"\\\\.\\root\\wmi", L"zqqBIOSInt0", L"zqqBIntM", L"zqqBDataIn", L"ZqqBIntM"}) {
    FakeCom com(record);
    const HRESULT thrown = ThrownWithout(text, [] {
      const std::array<std::uint8_t, 2> item{0x0A, 0x01};
      std::uint32_t returnCode = 0;
      ZQBiosWmi bios;
      static_cast<void>(bios.ExecuteCommand(1, 2, item.data(), 0, nullptr, &returnCode));
    });
    EXPECT_EQ(thrown, E_OUTOFMEMORY) << Narrow(text);
    EXPECT_EQ(com.initialized, 1) << Narrow(text);
    EXPECT_EQ(com.uninitialized, 1) << Narrow(text);
    EXPECT_EQ(LiveObjects(), 0) << Narrow(text);
  }
  EXPECT_TRUE(log.Records().empty());
}
