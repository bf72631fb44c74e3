#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "platform/platform_calls.h"
#include "platform/wmi/zq_bios_wmi.h"
#include "variants.h"

using namespace Zq::Gantry::Server::Shared::WMI;
using namespace Standin::Firmware;
using TestSupport::LogRecord;
using TestSupport::Result;

namespace {

constexpr char kData[] = "Get(Data)";

class ZQBiosWmiOutput : public TestSupport::WmiTest {
 protected:
  HRESULT Run() {
    const std::array<std::uint8_t, 2> item{0x0B, 0x01};
    output.fill(0xEE);
    return bios.ExecuteCommand(1, 2, item.data(), 4, output.data(), &returnCode);
  }
  /// Makes the firmware answer with `count` bytes: 10, 20, 30, ...
  void AnswerBytes(LONG lowerBound, std::size_t count) {
    std::vector<std::uint8_t> bytes(count);
    for (std::size_t i = 0; i < count; ++i) bytes[i] = static_cast<std::uint8_t>(10 * (i + 1));
    firmware.script().Answer(kData, [lowerBound, bytes](VARIANT* value) {
      MakeElements<std::uint8_t>(value, VT_UI1, lowerBound, bytes);
    });
  }
  void ExpectUnwritten(const std::wstring& message) {
    EXPECT_EQ(Run(), S_OK);
    EXPECT_EQ(output, (Output{0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE}));
    EXPECT_EQ(log.Records(),
              std::vector<LogRecord>{TestSupport::Warning(
                  L"class Zq::Gantry::Server::Shared::WMI::ZQBiosWmi.GetOutputData - " + message,
                  L"WattleafService")});
    EXPECT_EQ(ledger.getElementCalls, 0);
    EXPECT_EQ(ledger.Outstanding(), 0U);
  }
  void TearDown() override {
    bios.CloseBiosConnection();
    WmiTest::TearDown();
  }

  using Output = std::array<std::uint8_t, 6>;
  ZQBiosWmi bios;
  Output output{};
  std::uint32_t returnCode = 0xEEEEEEEE;
};

}  // namespace

TEST_F(ZQBiosWmiOutput, CopiesExactlyTheRequestedBytes) {
  AnswerBytes(0, 4);
  EXPECT_EQ(Run(), S_OK);
  EXPECT_EQ(output, (Output{10, 20, 30, 40, 0xEE, 0xEE}));
  EXPECT_TRUE(log.Records().empty());
}

TEST_F(ZQBiosWmiOutput, LogsAShortAnswerAndWritesNothing) {
  AnswerBytes(0, 3);
  ExpectUnwritten(L"invalid return data size. requested 4 byte, but retuned 3 byte");
}

TEST_F(ZQBiosWmiOutput, LogsALongAnswerAndWritesNothing) {
  AnswerBytes(0, 5);
  ExpectUnwritten(L"invalid return data size. requested 4 byte, but retuned 5 byte");
}

TEST_F(ZQBiosWmiOutput, RejectsANullAnswer) {
  Simulate("data-null");
  ExpectUnwritten(L"return data is invalid");
}

TEST_F(ZQBiosWmiOutput, RejectsANullArray) {
  firmware.script().Answer(kData, [](VARIANT* value) {
    value->vt = VT_ARRAY | VT_UI1;
    value->parray = nullptr;
  });
  ExpectUnwritten(L"return data is invalid");
}

TEST_F(ZQBiosWmiOutput, RejectsAnArrayOfNumbers) {
  Simulate("data-numbers");
  ExpectUnwritten(L"return data is invalid");
}

TEST_F(ZQBiosWmiOutput, RejectsAnArrayOfNumbersDeclaredAsBytes) {
  firmware.script().Answer(kData, [](VARIANT* value) {
    MakeElements<LONG>(value, VT_I4, 0, {1, 2, 3, 4});
    value->vt = VT_ARRAY | VT_UI1;
  });
  ExpectUnwritten(L"return data is invalid");
}

TEST_F(ZQBiosWmiOutput, RejectsATwoDimensionalArray) {
  Simulate("data-two-dimensional");
  ExpectUnwritten(L"return data is invalid");
}

TEST_F(ZQBiosWmiOutput, IsZeroWhenTheAnswerKeepsThePreparedArray) {
  firmware.script().Fail(kData, S_OK);
  EXPECT_EQ(Run(), S_OK);
  EXPECT_EQ(output, (Output{0, 0, 0, 0, 0xEE, 0xEE}));
  EXPECT_EQ(ledger.Outstanding(), 0U);
}

TEST_F(ZQBiosWmiOutput, CopiesFromTheLowerBoundUpToTheCount) {
  AnswerBytes(1, 4);
  EXPECT_EQ(Run(), S_OK);
  EXPECT_EQ(output, (Output{0xEE, 10, 20, 30, 0xEE, 0xEE}));
  EXPECT_TRUE(log.Records().empty());
}

TEST_F(ZQBiosWmiOutput, WritesNothingForANegativeLowerBound) {
  AnswerBytes(-1, 4);
  EXPECT_EQ(Run(), S_OK);
  EXPECT_EQ(output, (Output{0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE}));
}

TEST_F(ZQBiosWmiOutput, KeepsTheByteOfAFailedElementAndContinues) {
  AnswerBytes(0, 4);
  ledger.getElementResult = Result(0x8007000E);
  ledger.refusedIndex = 1;
  EXPECT_EQ(Run(), S_OK);
  EXPECT_EQ(output, (Output{10, 0xEE, 30, 40, 0xEE, 0xEE}));
  EXPECT_TRUE(log.Records().empty());
}

TEST_F(ZQBiosWmiOutput, EndsTheCommandWhenThePreparedArrayCannotBeCreated) {
  ledger.refusedVector = 3;  // the first two are for the signature and the input
  EXPECT_EQ(Run(), E_FAIL);
  EXPECT_EQ(log.Records(),
            std::vector<LogRecord>{TestSupport::Warning(
                L"class Zq::Gantry::Server::Shared::WMI::ZQBiosWmi.GetOutputData - failed on "
                L"function SafeArrayCreateVector(OutputDataSize) with HRESULT 0x80004005",
                L"WattleafService")});
  EXPECT_EQ(firmware.script().Count(kData), 0);
  EXPECT_EQ(ledger.Outstanding(), 0U);
}

TEST_F(ZQBiosWmiOutput, PassesTheReturnCodeThrough) {
  firmware.script().Answer("Get(rwReturnCode)", [](VARIANT* value) { MakeNumber(value, -2); });
  EXPECT_EQ(Run(), S_OK);
  EXPECT_EQ(returnCode, 0xFFFFFFFEU);
}

TEST_F(ZQBiosWmiOutput, ReturnsZeroForAReturnCodeThatIsNotANumber) {
  Simulate("return-code-null");
  EXPECT_EQ(Run(), S_OK);
  EXPECT_EQ(returnCode, 0U);
}
