#include <windows.h>

#include <comdef.h>
#include <gtest/gtest.h>

#include <array>

#include "platform/wmi/public_wmi.h"
#include "platform/wmi/zq_bios_wmi.h"
#include "platform_calls.h"

using namespace Zq::Gantry::Server::Shared::WMI;
using namespace Standin::Firmware;
using TestSupport::FakeCom;

namespace {

class WmiOutOfMemory : public TestSupport::WmiTest {
 protected:
  /// The result that `call` raises for lack of this text; S_OK if it raises none.
  template <typename Call>
  HRESULT RaisedWithout(const wchar_t* text, Call call) {
    ledger.refusedText = text;
    HRESULT raised = S_OK;
    try {
      call();
    } catch (const _com_error& error) {
      raised = error.Error();
    }
    ledger.refusedText.clear();
    EXPECT_EQ(ledger.Outstanding(), 0U);
    return raised;
  }
};

}  // namespace

TEST_F(WmiOutOfMemory, TextOfTheReadThatCannotBeAllocatedIsRaised) {
  for (const wchar_t* text : {L"ROOT\\CIMV2", L"WQL", L"SELECT * FROM Win32_ComputerSystem"}) {
    FakeCom com(record);
    const HRESULT raised = RaisedWithout(text, [] {
      WideDocument document;
      document.SetObject();
      static_cast<void>(PublicWmi().GetPropertyValue(document));
    });
    EXPECT_EQ(raised, E_OUTOFMEMORY) << Narrow(text);
    EXPECT_EQ(com.uninitialized, 1) << Narrow(text);
    EXPECT_EQ(LiveObjects(), 0) << Narrow(text);
  }
  EXPECT_TRUE(log.Records().empty());
}

TEST_F(WmiOutOfMemory, TextOfACommandThatCannotBeAllocatedIsRaised) {
  for (const wchar_t* text :
       {L"\\\\.\\root\\wmi", L"zqqBIOSInt0", L"zqqBIntM", L"zqqBDataIn", L"ZqqBIntM"}) {
    FakeCom com(record);
    const HRESULT raised = RaisedWithout(text, [] {
      const std::array<std::uint8_t, 2> item{0x0A, 0x01};
      std::uint32_t returnCode = 0;
      ZQBiosWmi bios;
      static_cast<void>(bios.ExecuteCommand(1, 2, item.data(), 0, nullptr, &returnCode));
    });
    EXPECT_EQ(raised, E_OUTOFMEMORY) << Narrow(text);
    EXPECT_EQ(com.initialized, 1) << Narrow(text);
    EXPECT_EQ(com.uninitialized, 1) << Narrow(text);
    EXPECT_EQ(LiveObjects(), 0) << Narrow(text);
  }
  EXPECT_TRUE(log.Records().empty());
}
