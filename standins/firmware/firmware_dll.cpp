// Stand-in for the firmware's WMI classes and for Win32_ComputerSystem, which the library reads. It
// simulates a supported notebook: firmware item 0x010A returns the value last written to it, item
// 0x010B has its flag set, and the third OEM string has the marker.
//
// The environment variable WATTLEAF_FIRMWARE makes it deviate; comma-separated words:
//   flag-clear              the platform flag is not set
//   drops-write, reads-six  item 0x010A does not keep the value; it always reads as 6
//   no-marker, marker-lower-case, marker-goes-on    the third OEM string; with the last word,
//                           a digit follows the marker
//   oem-missing, oem-null, oem-empty, oem-text, oem-number, oem-truth, oem-numbers    the property
//                           is absent, or of another type
//   no-computer-system, two-computer-systems, invalid-class, invalid-query    the enumeration
//   no-locator, no-firmware-namespace, no-system-namespace, no-blanket        the connection
//   no-class, no-input-class, no-method, no-instance, slow-instance, no-call  the command's steps
//   outdata-null, return-code-null, data-null, data-short, data-long, data-numbers,
//   data-two-dimensional, data-from-one, data-from-minus-one                  the answer's shape
//   fail:CALL=HEX, fail:CALL#N=HEX    the call, or its N-th occurrence, returns this HRESULT and no
//                           object; firmware_script.h lists the names of the calls
// An unknown word is reported on standard error.

#include <windows.h>

#include <wbemidl.h>

#include <cstdio>
#include <cstdlib>

#include "firmware_script.h"
#include "live_object.h"
#include "locator.h"

namespace {

/// Reads WATTLEAF_FIRMWARE once for the process.
void ReadEnvironment() {
  static const bool done = [] {
    const char* words = std::getenv("WATTLEAF_FIRMWARE");
    for (const auto& word : Standin::Firmware::TheScript().Reset(words != nullptr ? words : "")) {
      std::fprintf(stderr, "firmware stand-in: unknown word %s\n", word.c_str());
    }
    return true;
  }();
  static_cast<void>(done);
}

}  // namespace

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** object) {
  *object = nullptr;
  if (clsid != CLSID_WbemLocator) return CLASS_E_CLASSNOTAVAILABLE;
  ReadEnvironment();
  return Standin::Firmware::LocatorFactory().QueryInterface(iid, object);
}

STDAPI DllCanUnloadNow() { return Standin::Firmware::LiveObjects() == 0 ? S_OK : S_FALSE; }
