#include "platform/wmi/platform_probes.h"

#include <gtest/gtest.h>

#include "platform/platform_calls.h"

namespace WMI = Zq::Gantry::Server::Shared::WMI;
using namespace Standin::Firmware;
using TestSupport::FakeCom;

namespace {

class ReadBiosPlatformFlag : public TestSupport::WmiTest {
 protected:
  /// Reads the flag with these words of the stand-in; checks the number of commands and of COM
  /// calls.
  void ExpectFlag(const std::string& words, bool flag, std::size_t commands) {
    Simulate(words);
    firmware.machine().Reset();
    FakeCom com(record);
    EXPECT_EQ(WMI::ReadBiosPlatformFlag(), flag) << words;
    EXPECT_EQ(firmware.machine().Received().size(), commands) << words;
    EXPECT_EQ(com.initialized, 1) << words;
    EXPECT_EQ(com.uninitialized, 1) << words;
    EXPECT_EQ(LiveObjects(), 0) << words;
  }
};

using FindCarbonSupportOemString = TestSupport::WmiTest;

}  // namespace

TEST_F(ReadBiosPlatformFlag, SendsThreeCommandsOverOneConnection) {
  EXPECT_TRUE(WMI::ReadBiosPlatformFlag());
  const auto received = firmware.machine().Received();
  ASSERT_EQ(received.size(), 3U);

  std::vector<std::uint8_t> written(130, 0);
  written[0] = 0x0A;
  written[1] = 0x01;
  written[2] = 0x07;
  EXPECT_EQ(received[0].method, "zqqBIOSInt0");
  EXPECT_EQ(received[0].command, 2);
  EXPECT_EQ(received[0].size, 130);
  EXPECT_EQ(received[0].data, written);
  EXPECT_EQ(received[1].method, "zqqBIOSInt128");
  EXPECT_EQ(received[1].command, 1);
  EXPECT_EQ(received[1].data, (std::vector<std::uint8_t>{0x0A, 0x01}));
  EXPECT_EQ(received[2].method, "zqqBIOSInt128");
  EXPECT_EQ(received[2].command, 1);
  EXPECT_EQ(received[2].data, (std::vector<std::uint8_t>{0x0B, 0x01}));
  EXPECT_EQ(firmware.script().Count("CreateInstance"), 1);
  EXPECT_TRUE(log.Records().empty());
}

TEST_F(ReadBiosPlatformFlag, IsFalseForDeviatingFirmware) {
  ExpectFlag("", true, 3);
  ExpectFlag("flag-clear", false, 3);
  ExpectFlag("drops-write", false, 2);
  ExpectFlag("reads-six", false, 2);
  EXPECT_TRUE(log.Records().empty());
  ExpectFlag("no-class", false, 0);
  ExpectFlag("no-call", false, 0);
  ExpectFlag("data-short", false, 2);
  ExpectFlag("data-null", false, 2);
}

TEST_F(ReadBiosPlatformFlag, IsFalseWhenAnyCommandFails) {
  for (const char* occurrence : {"1", "2", "3"}) {
    ExpectFlag(std::string("fail:ExecMethod#") + occurrence + "=80041001", false,
               static_cast<std::size_t>(*occurrence - '1'));
  }
  EXPECT_EQ(log.Records().size(), 3U);
}

TEST_F(ReadBiosPlatformFlag, KeepsTheReadBackWhenTheFlagAnswerIsInvalid) {
  firmware.script().Answer(
      "Get(Data)", [](VARIANT* value) { value->vt = VT_NULL; }, 2);
  EXPECT_TRUE(WMI::ReadBiosPlatformFlag());
  EXPECT_EQ(log.Records().size(), 1U);
}

TEST_F(FindCarbonSupportOemString, FindsTheMarkerInTheThirdString) {
  EXPECT_TRUE(WMI::FindCarbonSupportOemString());
  Simulate("marker-goes-on");
  EXPECT_TRUE(WMI::FindCarbonSupportOemString());
  EXPECT_TRUE(log.Records().empty());
}

TEST_F(FindCarbonSupportOemString, IsFalseWithoutTheMarker) {
  for (const char* words : {"no-marker", "marker-lower-case", "oem-null", "oem-empty", "oem-text",
                            "oem-number", "oem-truth", "oem-numbers", "no-computer-system"}) {
    Simulate(words);
    EXPECT_FALSE(WMI::FindCarbonSupportOemString()) << words;
    EXPECT_EQ(LiveObjects(), 0) << words;
  }
  EXPECT_TRUE(log.Records().empty());
}

TEST_F(FindCarbonSupportOemString, LogsOneWarningWhenTheReadFails) {
  for (const char* words : {"oem-missing", "no-system-namespace", "invalid-class", "invalid-query",
                            "fail:Next(Win32_ComputerSystem)#2=80041001"}) {
    Simulate(words);
    log.Clear();
    EXPECT_FALSE(WMI::FindCarbonSupportOemString()) << words;
    EXPECT_EQ(log.Records().size(), 1U) << words;
  }
}
