// GetPropertyValue when a call fails.

#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/public_wmi_fixture.h"

using namespace Zq::Gantry::Server::Shared::WMI;
using namespace Standin::Firmware;
using TestSupport::FakeCom;
using TestSupport::LogRecord;
using TestSupport::Result;

namespace {

LogRecord PropertyWarning(const std::wstring& functionAndCall, const std::wstring& result) {
  return TestSupport::Warning(L"class Zq::Gantry::Server::Shared::WMI::PublicWmi." +
                              functionAndCall + L" with HRESULT " + result);
}

using GetPropertyValue = TestSupport::PublicWmiFixture;

const std::wstring kLocatorCall = L"ConnectToWmi - failed on function CoCreateInstance";
const std::wstring kServerCall =
    L"ConnectToWmi - failed on function IWbemLocator->ConnectServer(WmiNamespace)";
const std::wstring kNextCall = L"GetPropertyValue - failed on function IEnumWbemClassObject->Next";
const std::wstring kGetCall = L"GetPropertyValue - failed on function IWbemClassObject->Get";

HRESULT WINAPI CreateNothing(REFCLSID, LPUNKNOWN, DWORD, REFIID, LPVOID* object) {
  *object = nullptr;
  return S_OK;
}

HRESULT WINAPI RefuseBlanket(IUnknown*, DWORD, DWORD, OLECHAR*, DWORD, DWORD,
                             RPC_AUTH_IDENTITY_HANDLE, DWORD) {
  return Result(0x80070005);
}

}  // namespace

TEST_F(GetPropertyValue, FailsWithoutALocator) {
  Simulate("no-locator");
  ExpectFailure(0x20000002, PropertyWarning(kLocatorCall, L"0x80040154"));
  EXPECT_EQ(firmware.script().Count("CreateInstance"), 1) << "it must not be tried twice";
}

TEST_F(GetPropertyValue, FailsForANullLocator) {
  const Standin::ImportPatch create("CoCreateInstance", &CreateNothing);
  ExpectFailure(0x20000002, PropertyWarning(kLocatorCall, L"0x80004005"));
}

TEST_F(GetPropertyValue, ReturnsItsOwnStatusForAMissingNamespace) {
  Simulate("no-system-namespace");
  ExpectFailure(0x20000012, PropertyWarning(kServerCall, L"0x8004100e"));
}

TEST_F(GetPropertyValue, FailsWhenTheServerRefuses) {
  Simulate("fail:ConnectServer(ROOT\\CIMV2)=80070005");
  ExpectFailure(0x20000002, PropertyWarning(kServerCall, L"0x80070005"));
}

TEST_F(GetPropertyValue, FailsForANullServer) {
  Simulate("fail:ConnectServer(ROOT\\CIMV2)=0");
  ExpectFailure(0x20000002, PropertyWarning(kServerCall, L"0x80004005"));
}

TEST_F(GetPropertyValue, FailsWhenTheBlanketIsRefused) {
  const Standin::ImportPatch blanket("CoSetProxyBlanket", &RefuseBlanket);
  ExpectFailure(0x20000002, PropertyWarning(L"ConnectToWmi - failed on function CoSetProxyBlanket",
                                            L"0x80070005"));
  EXPECT_EQ(firmware.script().Count("ExecQuery"), 0);
}

TEST_F(GetPropertyValue, KeepsTheStatusWhenTheQueryFails) {
  for (const char* code : {"80041017", "80041010", "0"}) {
    Simulate(std::string("fail:ExecQuery=") + code);
    log.Clear();
    record.Clear();
    const std::wstring text = *code == '0' ? L"0x80004005" : L"0x" + std::wstring(code, code + 8);
    ExpectFailure(
        0x20000002,
        PropertyWarning(L"EnumClassObject - failed on function IWbemServices->ExecQuery", text));
  }
}

TEST_F(GetPropertyValue, ReturnsItsOwnStatusForAnInvalidClass) {
  Simulate("invalid-class");
  ExpectFailure(0x2000000F, PropertyWarning(kNextCall, L"0x80041010"));
}

TEST_F(GetPropertyValue, ReturnsItsOwnStatusForAnInvalidQuery) {
  Simulate("invalid-query");
  ExpectFailure(0x20000010, PropertyWarning(kNextCall, L"0x80041017"));
}

TEST_F(GetPropertyValue, KeepsTheStatusOnOtherFailuresOfNext) {
  Simulate("fail:Next(Win32_ComputerSystem)=80041001");
  ExpectFailure(0x20000002, PropertyWarning(kNextCall, L"0x80041001"));
}

TEST_F(GetPropertyValue, TreatsANullObjectAsAFailureOfNext) {
  Simulate("null-computer-system");
  ExpectFailure(0x20000002, PropertyWarning(kNextCall, L"0x80004005"));
  EXPECT_EQ(firmware.script().Count("Get(OEMStringArray)"), 0);
}

TEST_F(GetPropertyValue, KeepsStatusZeroWithoutAMemberWhenALaterNextFails) {
  Simulate("fail:Next(Win32_ComputerSystem)#2=80041001");
  ExpectFailure(0, PropertyWarning(kNextCall, L"0x80041001"));
}

TEST_F(GetPropertyValue, ReturnsItsOwnStatusForAMissingProperty) {
  Simulate("oem-missing");
  ExpectFailure(0x2000000D, PropertyWarning(kGetCall, L"0x80041002"));
}

TEST_F(GetPropertyValue, KeepsTheStatusOnOtherFailuresOfGet) {
  Simulate("fail:Get(OEMStringArray)=80041001");
  ExpectFailure(0x20000002, PropertyWarning(kGetCall, L"0x80041001"));
}

TEST_F(GetPropertyValue, KeepsStatusZeroWithoutAMemberWhenALaterGetFails) {
  Simulate("two-computer-systems,fail:Get(OEMStringArray)#2=80041001");
  ExpectFailure(0, PropertyWarning(kGetCall, L"0x80041001"));
}

TEST_F(GetPropertyValue, LogsAFailedComInitializationAndStillUninitializes) {
  FakeCom com(record);
  com.initializeResult = RPC_E_CHANGED_MODE;
  EXPECT_EQ(Read(), 0U);
  EXPECT_EQ(log.Records(),
            std::vector<LogRecord>{PropertyWarning(
                L"GetPropertyValue - failed on function CoInitializeEx", L"0x80010106")});
  EXPECT_TRUE(HasResult());
  EXPECT_EQ(com.uninitialized, 1);
}

TEST_F(GetPropertyValue, LogsNothingWhenSecurityIsAlreadySet) {
  FakeCom com(record);
  com.securityResult = RPC_E_TOO_LATE;
  EXPECT_EQ(Read(), 0U);
  EXPECT_TRUE(log.Records().empty());
}

TEST_F(GetPropertyValue, LogsASecurityFailureAndReadsAnyway) {
  FakeCom com(record);
  com.securityResult = Result(0x80070005);
  EXPECT_EQ(Read(), 0U);
  EXPECT_EQ(log.Records(),
            std::vector<LogRecord>{PropertyWarning(
                L"ConnectToWmi - failed on function CoInitializeSecurity", L"0x80070005")});
  EXPECT_TRUE(HasResult());
}

TEST_F(GetPropertyValue, ThrowsWhenAStringCannotBeAllocated) {
  for (const wchar_t* text : {L"ROOT\\CIMV2", L"WQL", L"SELECT * FROM Win32_ComputerSystem"}) {
    FakeCom com(record);
    const HRESULT thrown = ThrownWithout(text, [] {
      WideDocument unused;
      unused.SetObject();
      static_cast<void>(PublicWmi().GetPropertyValue(unused));
    });
    EXPECT_EQ(thrown, E_OUTOFMEMORY) << Narrow(text);
    EXPECT_EQ(com.uninitialized, 1) << Narrow(text);
    EXPECT_EQ(LiveObjects(), 0) << Narrow(text);
  }
  EXPECT_TRUE(log.Records().empty());
}
