#include "platform_calls.h"

#include <sstream>

namespace TestSupport {

namespace {

PlayedCom* current = nullptr;

}  // namespace

PlayedCom::PlayedCom()
    : initialize_("CoInitializeEx", &PlayedCom::Initialize),
      uninitialize_("CoUninitialize", &PlayedCom::Uninitialize),
      security_("CoInitializeSecurity", &PlayedCom::InitializeSecurity) {
  current = this;
}

PlayedCom::~PlayedCom() { current = nullptr; }

HRESULT WINAPI PlayedCom::Initialize(void*, DWORD model) {
  ++current->initialized;
  current->models.push_back(model);
  return current->initializeResult;
}

void WINAPI PlayedCom::Uninitialize() {
  ++current->uninitialized;
  current->liveWhenLeft.push_back(Standin::Firmware::LiveObjects());
}

HRESULT WINAPI PlayedCom::InitializeSecurity(PSECURITY_DESCRIPTOR descriptor, LONG services,
                                             SOLE_AUTHENTICATION_SERVICE* list, void* reserved1,
                                             DWORD level, DWORD impersonation, void* authList,
                                             DWORD capabilities, void* reserved3) {
  std::ostringstream call;
  const auto pointer = [](const void* value) { return value == nullptr ? "null" : "something"; };
  call << pointer(descriptor) << ' ' << services << ' ' << pointer(list) << ' '
       << pointer(reserved1) << ' ' << level << ' ' << impersonation << ' ' << pointer(authList)
       << ' ' << capabilities << ' ' << pointer(reserved3);
  current->securityCalls.push_back(call.str());
  return current->securityResult;
}

}  // namespace TestSupport
