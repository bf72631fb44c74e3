#include "registered_firmware.h"

#include <wbemidl.h>

#include <stdexcept>

#include "locator.h"

namespace Standin::Firmware {

RegisteredFirmware::RegisteredFirmware(const std::string& words) {
  const auto unknown = TheScript().Reset(words);
  if (!unknown.empty()) throw std::runtime_error("unknown firmware word: " + unknown.front());
  TheMachine().Reset();
  CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  const HRESULT result = CoRegisterClassObject(CLSID_WbemLocator, &LocatorFactory(),
                                               CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie_);
  if (SUCCEEDED(result)) return;
  CoUninitialize();
  throw std::runtime_error("COM does not take the firmware stand-in");
}

RegisteredFirmware::~RegisteredFirmware() {
  CoRevokeClassObject(cookie_);
  CoUninitialize();
}

}  // namespace Standin::Firmware
