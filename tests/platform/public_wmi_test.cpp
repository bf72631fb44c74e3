#include "platform/wmi/public_wmi.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/public_wmi_fixture.h"
#include "variants.h"

using namespace Zq::Gantry::Server::Shared::WMI;
using namespace Standin::Firmware;
using TestSupport::FakeCom;
using TestSupport::LogRecord;

namespace {

constexpr char kGet[] = "Get(OEMStringArray)";
constexpr char kNext[] = "Next(Win32_ComputerSystem)";

using GetPropertyValue = TestSupport::PublicWmiFixture;

}  // namespace

TEST_F(GetPropertyValue, MakesExactlyTheExpectedCalls) {
  EXPECT_EQ(Read(), 0U);
  const std::vector<std::string> calls = {
      "CreateInstance",
      "ConnectServer(ROOT\\CIMV2)",
      "SetBlanket 10,0,3,3,0",
      "ExecQuery WQL|SELECT * FROM Win32_ComputerSystem|48",
      "Next(Win32_ComputerSystem) -1 1",
      "Get(OEMStringArray) 0",
      "Next(Win32_ComputerSystem) -1 1",
  };
  EXPECT_EQ(firmware.script().Trace(), calls);
  EXPECT_TRUE(log.Records().empty());
}

TEST_F(GetPropertyValue, StoresTheStringsInOrder) {
  EXPECT_EQ(Read(), 0U);
  ASSERT_TRUE(HasResult());
  ASSERT_EQ(document.MemberCount(), 1U);
  const auto texts = document[L"result"].GetArray();
  ASSERT_EQ(texts.Size(), 4U);
  EXPECT_STREQ(texts[0].GetString(), L"Simulated notebook");
  EXPECT_STREQ(texts[2].GetString(), L"Features: CarbonSupport=1");
}

TEST_F(GetPropertyValue, StoresNumbersStringsAndBooleansByType) {
  Simulate("oem-number");
  EXPECT_EQ(Read(), 0U);
  EXPECT_EQ(document[L"result"].GetInt(), 1);

  document.SetObject();
  Simulate("oem-text");
  EXPECT_EQ(Read(), 0U);
  EXPECT_STREQ(document[L"result"].GetString(), L"CarbonSupport=1");

  document.SetObject();
  Simulate("oem-truth");
  EXPECT_EQ(Read(), 0U);
  EXPECT_TRUE(document[L"result"].IsTrue());

  document.SetObject();
  Simulate("oem-numbers");
  EXPECT_EQ(Read(), 0U);
  ASSERT_EQ(document[L"result"].Size(), 3U);
  EXPECT_EQ(document[L"result"][2].GetInt(), 3);
}

TEST_F(GetPropertyValue, ReadsAnyNonzeroBooleanAsTrue) {
  firmware.script().Answer(kGet, [](VARIANT* value) { MakeTruth(value, 2); });
  EXPECT_EQ(Read(), 0U);
  EXPECT_TRUE(document[L"result"].IsTrue());

  document.SetObject();
  Simulate("");
  firmware.script().Answer(kGet, [](VARIANT* value) { MakeTruth(value, VARIANT_FALSE); });
  EXPECT_EQ(Read(), 0U);
  EXPECT_TRUE(document[L"result"].IsFalse());
}

TEST_F(GetPropertyValue, ReadsANullStringAsEmpty) {
  firmware.script().Answer(kGet, [](VARIANT* value) {
    value->vt = VT_BSTR;
    value->bstrVal = nullptr;
  });
  EXPECT_EQ(Read(), 0U);
  EXPECT_STREQ(document[L"result"].GetString(), L"");
}

TEST_F(GetPropertyValue, StoresNothingWithoutAnObject) {
  Simulate("no-computer-system");
  EXPECT_EQ(Read(), 0x20000002U);
  EXPECT_FALSE(HasResult());
  EXPECT_TRUE(log.Records().empty());
}

TEST_F(GetPropertyValue, StoresNothingForANullProperty) {
  Simulate("oem-null");
  EXPECT_EQ(Read(), 0x20000002U);
  EXPECT_FALSE(HasResult());
  EXPECT_TRUE(log.Records().empty());
}

TEST_F(GetPropertyValue, StoresNothingForAnEmptyArray) {
  Simulate("oem-empty");
  EXPECT_EQ(Read(), 0x20000002U);
  EXPECT_FALSE(HasResult());
  EXPECT_TRUE(log.Records().empty());
}

TEST_F(GetPropertyValue, StoresNothingForUnsupportedTypes) {
  for (const VARTYPE type : {VT_EMPTY, VT_I2, VT_R8, VT_UI4, VT_UNKNOWN}) {
    Simulate("");
    firmware.script().Answer(kGet, [type](VARIANT* value) {
      value->vt = type;
      value->llVal = 0;
    });
    EXPECT_EQ(Read(), 0x20000002U) << type;
    EXPECT_FALSE(HasResult()) << type;
  }
  EXPECT_TRUE(log.Records().empty());
}

TEST_F(GetPropertyValue, StoresTheValueOfTheLastObject) {
  Simulate("two-computer-systems");
  firmware.script().Answer(
      kGet, [](VARIANT* value) { MakeTexts(value, {L"first"}); }, 1);
  firmware.script().Answer(
      kGet, [](VARIANT* value) { MakeTexts(value, {L"second"}); }, 2);
  EXPECT_EQ(Read(), 0U);
  ASSERT_EQ(document[L"result"].Size(), 1U);
  EXPECT_STREQ(document[L"result"][0].GetString(), L"second");
}

TEST_F(GetPropertyValue, KeepsTheValueWhenALaterObjectHasNone) {
  Simulate("two-computer-systems");
  firmware.script().Answer(
      kGet, [](VARIANT* value) { value->vt = VT_NULL; }, 2);
  EXPECT_EQ(Read(), 0U);
  EXPECT_EQ(document[L"result"].Size(), 4U);
}

TEST_F(GetPropertyValue, ClearsTheValueForALaterEmptyArrayAndKeepsTheStatus) {
  Simulate("two-computer-systems");
  firmware.script().Answer(
      kGet, [](VARIANT* value) { MakeTexts(value, {}); }, 2);
  EXPECT_EQ(Read(), 0U);
  ASSERT_TRUE(HasResult());
  EXPECT_EQ(document[L"result"].Size(), 0U);
}

TEST_F(GetPropertyValue, ReleasesEachObjectAfterItsLastUse) {
  int duringBlanket = 0;
  int duringGet = 0;
  firmware.script().During("SetBlanket", [&] { duringBlanket = LiveObjects(); });
  firmware.script().During(kGet, [&] { duringGet = LiveObjects(); });
  EXPECT_EQ(Read(), 0U);
  EXPECT_EQ(duringBlanket, 1) << "the service; the locator is gone";
  EXPECT_EQ(duringGet, 2) << "enumerator and object; the service is gone";
  EXPECT_EQ(firmware.script().Count(kNext), 2);
}

TEST_F(GetPropertyValue, InitializesComAndSecurityBeforeCreatingTheLocator) {
  FakeCom com(record);
  EXPECT_EQ(Read(), 0U);
  std::vector<std::string> calls = TestSupport::ConnectionCalls("ROOT\\CIMV2");
  calls.insert(calls.end(), {
                                "ExecQuery WQL|SELECT * FROM Win32_ComputerSystem|48",
                                "end of services",
                                "Next(Win32_ComputerSystem) -1 1",
                                "Get(OEMStringArray) 0",
                                "end of Win32_ComputerSystem",
                                "Next(Win32_ComputerSystem) -1 1",
                                "end of enumerator",
                                "CoUninitialize",
                            });
  EXPECT_EQ(record.Lines(), calls);
}

TEST_F(GetPropertyValue, LeavesTheApartmentOnceAfterTheLastRelease) {
  FakeCom com(record);
  EXPECT_EQ(Read(), 0U);
  EXPECT_EQ(com.initialized, 1);
  EXPECT_EQ(com.liveWhenLeft, std::vector<int>{0});
}
