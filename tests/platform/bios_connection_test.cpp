#include <gtest/gtest.h>

#include <array>

#include "platform/platform_calls.h"
#include "platform/wmi/zq_bios_wmi.h"

using namespace Zq::Gantry::Server::Shared::WMI;
using namespace Standin::Firmware;
using TestSupport::FakeCom;
using TestSupport::LogRecord;
using TestSupport::Result;

namespace {

LogRecord ConnectionWarning(const std::wstring& call, const std::wstring& result) {
  return TestSupport::Warning(
      L"class Zq::Gantry::Server::Shared::WMI::ZQBiosWmi.GetReady - failed on function " + call +
          L" with HRESULT " + result,
      L"WattleafService");
}

const std::wstring kBiosServerCall = L"IWbemLocator->ConnectServer(WmiNamespace)";

class ZQBiosWmiConnection : public TestSupport::WmiTest {
 protected:
  HRESULT Run() {
    const std::array<std::uint8_t, 2> item{0x0A, 0x01};
    return bios.ExecuteCommand(1, 2, item.data(), 0, nullptr, &returnCode);
  }
  void ExpectWarnings(const std::vector<LogRecord>& warnings) {
    EXPECT_EQ(log.Records(), warnings);
  }

  FakeCom com{record};
  std::uint32_t returnCode = 0;
  ZQBiosWmi bios;
};

HRESULT WINAPI RefuseBiosBlanket(IUnknown*, DWORD, DWORD, OLECHAR*, DWORD, DWORD,
                                 RPC_AUTH_IDENTITY_HANDLE, DWORD) {
  return Result(0x80070005);
}

}  // namespace

TEST_F(ZQBiosWmiConnection, IsOpenedOnceAndClosedOnce) {
  EXPECT_EQ(bios.GetReady(), 1);
  EXPECT_EQ(bios.GetReady(), 1);
  EXPECT_EQ(record.Lines(), TestSupport::ConnectionCalls("\\\\.\\root\\wmi"));
  EXPECT_EQ(com.uninitialized, 0);
  EXPECT_EQ(LiveObjects(), 1);

  bios.CloseBiosConnection();
  bios.CloseBiosConnection();
  EXPECT_EQ(com.liveWhenLeft, std::vector<int>{0}) << "one CoUninitialize, after the last release";
  EXPECT_EQ(LiveObjects(), 0);
  ExpectWarnings({});
}

TEST_F(ZQBiosWmiConnection, IsClosedByTheDestructor) {
  {
    ZQBiosWmi other;
    EXPECT_EQ(other.GetReady(), 1);
  }
  EXPECT_EQ(com.initialized, 1);
  EXPECT_EQ(com.uninitialized, 1);
  EXPECT_EQ(LiveObjects(), 0);
}

TEST_F(ZQBiosWmiConnection, IsSharedByCommandsThatFetchTheirClassesAgain) {
  EXPECT_EQ(Run(), S_OK);
  EXPECT_EQ(Run(), S_OK);
  EXPECT_EQ(com.initialized, 1);
  for (const char* once : {"CreateInstance", "SetBlanket"}) {
    EXPECT_EQ(firmware.script().Count(once), 1) << once;
  }
  for (const char* twice : {"GetObject(zqqBIntM)", "GetMethod", "Get(__PATH)"}) {
    EXPECT_EQ(firmware.script().Count(twice), 2) << twice;
  }
  bios.CloseBiosConnection();
}

TEST_F(ZQBiosWmiConnection, CanBeReopenedAfterClosing) {
  EXPECT_EQ(bios.GetReady(), 1);
  bios.CloseBiosConnection();
  EXPECT_EQ(bios.GetReady(), 1);
  bios.CloseBiosConnection();
  EXPECT_EQ(com.initialized, 2);
  EXPECT_EQ(com.uninitialized, 2);
}

TEST_F(ZQBiosWmiConnection, StaysInTheApartmentWithoutALocator) {
  Simulate("no-locator");
  EXPECT_EQ(bios.GetReady(), 0);
  ExpectWarnings({ConnectionWarning(L"CoCreateInstance", L"0x80040154")});
  bios.CloseBiosConnection();
  EXPECT_EQ(com.initialized, 1);
  EXPECT_EQ(com.uninitialized, 0);
}

TEST_F(ZQBiosWmiConnection, LeavesTheApartmentWithoutAServer) {
  Simulate("no-firmware-namespace");
  EXPECT_EQ(bios.GetReady(), 0);
  ExpectWarnings({ConnectionWarning(kBiosServerCall, L"0x8004100e")});
  EXPECT_EQ(com.uninitialized, 1);
  bios.CloseBiosConnection();
  EXPECT_EQ(com.uninitialized, 1);
}

TEST_F(ZQBiosWmiConnection, TreatsANullServerAsAFailure) {
  Simulate("fail:ConnectServer(\\\\.\\root\\wmi)=0");
  EXPECT_EQ(bios.GetReady(), 0);
  ExpectWarnings({ConnectionWarning(kBiosServerCall, L"0x80004005")});
  EXPECT_EQ(com.uninitialized, 1);
}

TEST_F(ZQBiosWmiConnection, ReleasesTheServiceAndLeavesWhenTheBlanketIsRefused) {
  const Standin::ImportPatch blanket("CoSetProxyBlanket", &RefuseBiosBlanket);
  EXPECT_EQ(bios.GetReady(), 0);
  const LogRecord warning = ConnectionWarning(L"CoSetProxyBlanket", L"0x80070005");
  ExpectWarnings({warning});
  EXPECT_EQ(record.LinesOf({"log ", "end of services", "CoUninitialize"}),
            (std::vector<std::string>{TestSupport::LogLine(warning), "end of services",
                                      "CoUninitialize"}));
  EXPECT_EQ(com.liveWhenLeft, std::vector<int>{0}) << "one CoUninitialize, after the last release";
  EXPECT_EQ(LiveObjects(), 0);
}

TEST_F(ZQBiosWmiConnection, IsRetriedByTheNextCommandAfterAFailure) {
  Simulate("fail:ConnectServer(\\\\.\\root\\wmi)#1=80041001");
  EXPECT_EQ(Run(), E_FAIL);
  ExpectWarnings({ConnectionWarning(kBiosServerCall, L"0x80041001")});
  EXPECT_EQ(firmware.script().Count("GetObject(zqqBIntM)"), 0);

  EXPECT_EQ(Run(), S_OK);
  EXPECT_EQ(com.initialized, 2);
  bios.CloseBiosConnection();
  EXPECT_EQ(com.uninitialized, 2);
}

TEST_F(ZQBiosWmiConnection, LogsAFailedComInitializationAndStillUninitializes) {
  com.initializeResult = RPC_E_CHANGED_MODE;
  EXPECT_EQ(bios.GetReady(), 1);
  ExpectWarnings({ConnectionWarning(L"CoInitializeEx", L"0x80010106")});
  bios.CloseBiosConnection();
  EXPECT_EQ(com.uninitialized, 1);
}

TEST_F(ZQBiosWmiConnection, LogsNothingWhenSecurityIsAlreadySet) {
  com.securityResult = RPC_E_TOO_LATE;
  EXPECT_EQ(bios.GetReady(), 1);
  ExpectWarnings({});
  bios.CloseBiosConnection();
}

TEST_F(ZQBiosWmiConnection, LogsASecurityFailureAndConnectsAnyway) {
  com.securityResult = Result(0x80070005);
  EXPECT_EQ(bios.GetReady(), 1);
  ExpectWarnings({ConnectionWarning(L"CoInitializeSecurity", L"0x80070005")});
  bios.CloseBiosConnection();
}
