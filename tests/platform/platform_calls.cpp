#include "platform/platform_calls.h"

#include <comdef.h>
#include <wbemidl.h>

#include <algorithm>
#include <sstream>

namespace TestSupport {

namespace {

FakeCom* currentCom = nullptr;

const char* Presence(const void* value) { return value == nullptr ? "null" : "something"; }

std::string NameOf(const IID& id) {
  if (id == CLSID_WbemLocator) return "WbemLocator";
  return id == IID_IWbemLocator ? "IWbemLocator" : "something else";
}

}  // namespace

FakeCom::FakeCom(CallRecord& record)
    : record_(record),
      initialize_("CoInitializeEx", &FakeCom::Initialize),
      uninitialize_("CoUninitialize", &FakeCom::Uninitialize),
      security_("CoInitializeSecurity", &FakeCom::InitializeSecurity),
      create_("CoCreateInstance", &FakeCom::CreateInstance),
      blanket_("CoSetProxyBlanket", &FakeCom::SetBlanket) {
  currentCom = this;
}

FakeCom::~FakeCom() { currentCom = nullptr; }

HRESULT WINAPI FakeCom::Initialize(void* reserved, DWORD model) {
  ++currentCom->initialized;
  currentCom->record_.Add(std::string("CoInitializeEx ") + Presence(reserved) + " " +
                          std::to_string(model));
  return currentCom->initializeResult;
}

void WINAPI FakeCom::Uninitialize() {
  ++currentCom->uninitialized;
  currentCom->record_.Add("CoUninitialize");
  currentCom->liveWhenLeft.push_back(Standin::Firmware::LiveObjects());
}

HRESULT WINAPI FakeCom::InitializeSecurity(PSECURITY_DESCRIPTOR descriptor, LONG services,
                                           SOLE_AUTHENTICATION_SERVICE* list, void* reserved1,
                                           DWORD level, DWORD impersonation, void* authList,
                                           DWORD capabilities, void* reserved3) {
  std::ostringstream call;
  call << "CoInitializeSecurity " << Presence(descriptor) << ' ' << services << ' '
       << Presence(list) << ' ' << Presence(reserved1) << ' ' << level << ' ' << impersonation
       << ' ' << Presence(authList) << ' ' << capabilities << ' ' << Presence(reserved3);
  currentCom->record_.Add(call.str());
  return currentCom->securityResult;
}

HRESULT WINAPI FakeCom::CreateInstance(REFCLSID classId, IUnknown* outer, DWORD context, REFIID iid,
                                       void** object) {
  currentCom->record_.Add("CoCreateInstance " + NameOf(classId) + " " + Presence(outer) + " " +
                          std::to_string(context) + " " + NameOf(iid));
  return currentCom->create_.Original<decltype(CoCreateInstance)>()(classId, outer, context, iid,
                                                                    object);
}

HRESULT WINAPI FakeCom::SetBlanket(IUnknown* proxy, DWORD authentication, DWORD authorisation,
                                   OLECHAR* principal, DWORD level, DWORD impersonation,
                                   RPC_AUTH_IDENTITY_HANDLE identity, DWORD capabilities) {
  std::ostringstream call;
  call << "CoSetProxyBlanket " << authentication << ' ' << authorisation << ' '
       << Presence(principal) << ' ' << level << ' ' << impersonation << ' ' << Presence(identity)
       << ' ' << capabilities;
  currentCom->record_.Add(call.str());
  return currentCom->blanket_.Original<decltype(CoSetProxyBlanket)>()(
      proxy, authentication, authorisation, principal, level, impersonation, identity,
      capabilities);
}

std::vector<std::string> ConnectionCalls(const std::string& wmiNamespace) {
  return {
      "CoInitializeEx null 0",
      "CoInitializeSecurity null -1 null null 0 3 null 0 null",
      "CoCreateInstance WbemLocator null 1 IWbemLocator",
      "CreateInstance",
      "ConnectServer(" + wmiNamespace + ")",
      "end of locator",
      "CoSetProxyBlanket 10 0 null 3 3 null 0",
      "SetBlanket 10,0,3,3,0",
  };
}

void ExpectOnlyReleasesAfter(const std::string& line, const CallRecord& record) {
  const std::vector<std::string> lines = record.Lines();
  const auto last = std::find(lines.rbegin(), lines.rend(), line);
  ASSERT_NE(last, lines.rend()) << line;
  for (auto later = last.base(); later != lines.end(); ++later) {
    EXPECT_TRUE(later->starts_with("end of ")) << *later << " after " << line;
  }
}

WmiTest::WmiTest() {
  firmware.script().Listen([this](const std::string& call) { record.Add(call); });
}

WmiTest::~WmiTest() { firmware.script().Listen({}); }

HRESULT WmiTest::ThrownWithout(const wchar_t* text, const std::function<void()>& call) {
  ledger.refusedText = text;
  HRESULT thrown = S_OK;
  try {
    call();
  } catch (const _com_error& error) {
    thrown = error.Error();
  }
  ledger.refusedText.clear();
  EXPECT_EQ(ledger.Outstanding(), 0U);
  return thrown;
}

}  // namespace TestSupport
