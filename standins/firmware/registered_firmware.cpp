#include "registered_firmware.h"

#include <wbemidl.h>

#include <stdexcept>

#include "locator.h"

namespace Standin::Firmware {

RegisteredFirmware::RegisteredFirmware(const std::string& words) {
  const auto unknown = TheScript().Reset(words);
  if (!unknown.empty()) throw std::runtime_error("unknown firmware word: " + unknown.front());
  TheMachine().Reset();
  const HRESULT result =
      CoRegisterClassObject(CLSID_WbemLocator, &LocatorFactory(), CLSCTX_INPROC_SERVER,
                            REGCLS_MULTIPLEUSE, registration_.out());
  if (FAILED(result)) throw std::runtime_error("COM does not register the firmware stand-in");
}

}  // namespace Standin::Firmware
